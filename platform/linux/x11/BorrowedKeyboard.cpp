// SPDX-License-Identifier: MIT
#include "platform/linux/x11/BorrowedKeyboard.h"

#include "platform/linux/x11/X11Connection.h"
#include "platform/linux/x11/X11WindowManager.h"

BorrowedKeyboard::BorrowedKeyboard(X11Connection &x11, X11WindowManager &manager)
    : m_x11(x11), m_manager(manager)
{
}

bool BorrowedKeyboard::isWith(xcb_window_t window) const
{
    return holder() == window;
}

void BorrowedKeyboard::take(xcb_window_t window)
{
    const xcb_window_t before = holder();
    if (before == window)
        return;
    m_lender = before;
    give(window);
}

void BorrowedKeyboard::giveBack(xcb_window_t window)
{
    if (!isWith(window))
        return;
    for (const xcb_window_t other : {m_lender, m_manager.activeWindow()}) {
        if (other != window && canHaveIt(other)) {
            give(other);
            return;
        }
    }
}

xcb_window_t BorrowedKeyboard::holder() const
{
    const X11Owned<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(m_x11.get(), xcb_get_input_focus(m_x11.get()), nullptr));
    m_x11.readEventsSoon();
    return reply ? reply->focus : xcb_window_t(XCB_WINDOW_NONE);
}

/// The server's special values for "none" and "under the pointer" are not windows.
bool BorrowedKeyboard::canHaveIt(xcb_window_t window) const
{
    if (window <= XCB_INPUT_FOCUS_POINTER_ROOT || window == m_x11.root())
        return false;
    const auto cookie = xcb_get_window_attributes(m_x11.get(), window);
    const X11Owned<xcb_get_window_attributes_reply_t> reply(
        xcb_get_window_attributes_reply(m_x11.get(), cookie, nullptr));
    m_x11.readEventsSoon();
    return reply && reply->map_state == XCB_MAP_STATE_VIEWABLE;
}

/// Returns when the server has done it. Otherwise the program, over its own connection, might hide
/// the window while it has the keyboard, and the window manager would look for another one.
void BorrowedKeyboard::give(xcb_window_t window)
{
    const auto cookie =
        xcb_set_input_focus_checked(m_x11.get(), XCB_INPUT_FOCUS_PARENT, window, XCB_CURRENT_TIME);
    const X11Owned<xcb_generic_error_t> error(xcb_request_check(m_x11.get(), cookie));
    m_x11.readEventsSoon();
}
