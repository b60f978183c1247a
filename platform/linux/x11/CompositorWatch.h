// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QTimer>

#include <xcb/xcb.h>

class X11Connection;

/// Knows whether a compositor runs, that is whether what is transparent in a window lets those
/// behind it through. Main thread; the connection outlives it.
class CompositorWatch : public QObject
{
    Q_OBJECT
public:
    explicit CompositorWatch(X11Connection &x11);

    /// Asks the server. Not yet true of one that has only just come.
    bool isRunning() const;

Q_SIGNALS:
    /// A compositor has come or gone. Never emitted by a server without the extension for it.
    void changed();

private:
    void readEvent(const xcb_generic_event_t *event);

    X11Connection &m_x11;
    /// A compositor owns this selection of its screen.
    xcb_atom_t m_selection = XCB_ATOM_NONE;
    int m_changeEvent = -1;
    /// Runs while a compositor that has come is expected to blend its first picture.
    QTimer m_beginning;
};
