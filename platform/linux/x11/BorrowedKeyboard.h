// SPDX-License-Identifier: MIT
#pragma once

#include <xcb/xcb.h>

class X11Connection;
class X11WindowManager;

/// The keyboard focus, for a window that borrows it from another program. The window does not ask
/// the window manager: it takes the focus, as X11 allows a program whose window the user has just
/// clicked into. Main thread; the connection and the manager must outlive it.
class BorrowedKeyboard
{
public:
    BorrowedKeyboard(X11Connection &x11, X11WindowManager &manager);

    bool isWith(xcb_window_t window) const;

    /// The window that had it before `take`.
    xcb_window_t lender() const { return m_lender; }

    void take(xcb_window_t window);

    /// Gives the focus to the window that had it before, or else to the active one. Does nothing
    /// when the focus has moved elsewhere meanwhile.
    void giveBack(xcb_window_t window);

private:
    xcb_window_t holder() const;
    bool canHaveIt(xcb_window_t window) const;
    void give(xcb_window_t window);

    X11Connection &m_x11;
    X11WindowManager &m_manager;
    xcb_window_t m_lender = XCB_WINDOW_NONE;
};
