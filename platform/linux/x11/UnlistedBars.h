// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QObject>

#include <memory>
#include <xcb/xcb.h>

class X11Connection;

/// Bars that are missing in the window manager's list of windows: tiling managers list only the
/// windows that they tile. Such a bar is a child of the root window, or of a frame there. Main
/// thread.
class UnlistedBars : public QObject
{
    Q_OBJECT
public:
    UnlistedBars();
    ~UnlistedBars() override;

    /// The visible ones. Asks the server on each call, in a few round trips.
    QList<quint32> find();

Q_SIGNALS:
    /// A window has appeared that may be a bar. Emitted once after each call of `find`.
    void mayHaveCome();

private:
    void listen(bool listens) const;
    void readEvent(const xcb_generic_event_t *event);

    /// On a connection of its own nobody else hears of the windows that come and go.
    std::unique_ptr<X11Connection> m_x11;
    bool m_listens = false;
};
