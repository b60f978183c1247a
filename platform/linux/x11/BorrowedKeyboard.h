// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

class X11Connection;
class X11WindowManager;

/// The keyboard while a window has it that takes it from another program and gives it back. The
/// window asks no window manager, it takes it, as X11 allows a program whose window the user has
/// just clicked into. Main thread; the connection and the manager outlive it.
class BorrowedKeyboard
{
public:
    BorrowedKeyboard(X11Connection &x11, X11WindowManager &manager);

    bool isWith(xcb_window_t window) const;

    void take(xcb_window_t window);

    /// To the window that had it before, or else to the active one. Nothing happens when the
    /// keyboard has gone elsewhere meanwhile.
    void giveBack(xcb_window_t window);

private:
    xcb_window_t holder() const;
    bool canHaveIt(xcb_window_t window) const;
    void give(xcb_window_t window);

    X11Connection &m_x11;
    X11WindowManager &m_manager;
    xcb_window_t m_lender = XCB_WINDOW_NONE;
};
