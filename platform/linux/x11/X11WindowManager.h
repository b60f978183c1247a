// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/X11Properties.h"

#include <QRect>

class X11Connection;

/// What the window manager says about windows, and what it can be asked for. It may be slow: what
/// it says is how things were when it was last at work. Main thread; the connection outlives it.
class X11WindowManager
{
public:
    explicit X11WindowManager(const X11Connection &x11);

    /// None when no window is active.
    xcb_window_t activeWindow();

    /// While it shows the desktop some managers hide even a new window.
    bool isShowingDesktop();

    /// Whether the active window is a full-screen one that reaches into this part of the desktop,
    /// in device pixels. Managers keep such a window above all others that they manage.
    bool hasFullScreenWindowIn(const QRect &area);

    /// Whether the window is not where new windows are seen: minimised, rolled up, on another
    /// workspace or no longer kept above. A window that the manager has not seen yet is not.
    bool hasPutAway(xcb_window_t window);

    /// Puts the window on top, without giving it the keyboard.
    void putOnTop(xcb_window_t window);

private:
    QRect placeOf(xcb_window_t window) const;

    xcb_connection_t *m_connection;
    X11Properties m_properties;
};
