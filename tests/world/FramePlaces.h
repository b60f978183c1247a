// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QRect>
#include <QWindow>

struct xcb_connection_t;

/// What the X server tells of every place and size that a window has from now on, or rather the
/// frame that the window manager has put around it.
class FramePlaces
{
public:
    explicit FramePlaces(WId window);
    ~FramePlaces();

    /// All since the beginning.
    QList<QRect> read();

private:
    quint32 frameOf(quint32 window);

    xcb_connection_t *m_connection;
    QList<QRect> m_places;
};
