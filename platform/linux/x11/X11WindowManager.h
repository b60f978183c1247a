// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/X11Properties.h"

#include <QRect>

class X11Connection;

/// What the window manager says about windows, and what it can be asked to do. It may be slow: its
/// answers describe the state when it last ran. Main thread; the connection must outlive it.
class X11WindowManager
{
public:
    explicit X11WindowManager(X11Connection &x11);

    /// Whether it is part of a Wayland compositor of the wlroots kind. Such a compositor places new
    /// windows where it likes and gives them the keyboard.
    bool isOfWlroots();

    /// Whether it says that it can keep a window above the others, and that it doesn't give the
    /// keyboard to a new window that does not want it. Tiling managers often do neither.
    bool knowsPanels();

    /// None when no window is active.
    xcb_window_t activeWindow();

    /// Some managers hide even a new window while the desktop is shown.
    bool isShowingDesktop();

    /// Whether a full-screen window, or one that covers all of this screen, hides a window that the
    /// manager manages: managers keep the active one above all others, and while nothing is active,
    /// the topmost one. In device pixels; `window` itself does not count.
    bool hidesUnderFullScreen(xcb_window_t window, const QRect &screen);

    /// Whether the window is not where new windows appear: minimised, rolled up, on another
    /// workspace or no longer kept above. False for a window that the manager has not seen yet.
    bool hasPutAway(xcb_window_t window);

    /// Puts the window on top, without giving it the keyboard. False when it is under another one
    /// and the manager can't be asked for that.
    bool putOnTop(xcb_window_t window);

private:
    bool isFullScreen(xcb_window_t window, const QRect &screen);
    xcb_window_t topWindow(xcb_window_t except, const QRect &area);
    bool isCovered(xcb_window_t window);
    QList<quint32> fromTopDown();
    bool isShown(xcb_window_t window);
    QRect placeOf(xcb_window_t window) const;
    QList<quint32> numbers(xcb_window_t window, const char *property);
    QList<quint32> numbersOfRoot(const char *property);

    X11Connection &m_x11;
    X11Properties m_properties;
};
