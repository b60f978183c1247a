// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QRect>
#include <QWindow>

struct xcb_connection_t;

/// Every position and size that the X server reports from now on for a window, or rather for the
/// window manager's frame around it.
class FramePlaces
{
public:
    explicit FramePlaces(WId window);
    ~FramePlaces();

    /// All since this object was made.
    QList<QRect> read();

private:
    quint32 frameOf(quint32 window);

    xcb_connection_t *m_connection;
    QList<QRect> m_places;
};
