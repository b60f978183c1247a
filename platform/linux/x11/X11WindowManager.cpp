// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11WindowManager.h"

#include "platform/linux/x11/X11Connection.h"

#include <algorithm>

namespace
{

constexpr quint32 allDesktops = 0xFFFFFFFF;

/// A value of WM_STATE.
constexpr quint32 iconic = 3;

/// The sender in messages: the user, as for a pager.
constexpr quint32 fromUser = 2;

} // namespace

X11WindowManager::X11WindowManager(X11Connection &x11)
    : m_x11(x11), m_properties(x11.get(), x11.root())
{
}

bool X11WindowManager::isOfWlroots()
{
    const xcb_window_t own = numbersOfRoot("_NET_SUPPORTING_WM_CHECK").value(0, XCB_WINDOW_NONE);
    return own != XCB_WINDOW_NONE && m_properties.bytes(own, "_NET_WM_NAME").contains("wlroots");
}

bool X11WindowManager::knowsPanels()
{
    const QList<quint32> supported = numbersOfRoot("_NET_SUPPORTED");
    return supported.contains(m_properties.atom("_NET_WM_STATE_ABOVE")) &&
           supported.contains(m_properties.atom("_NET_WM_USER_TIME"));
}

xcb_window_t X11WindowManager::activeWindow()
{
    return numbersOfRoot("_NET_ACTIVE_WINDOW").value(0, XCB_WINDOW_NONE);
}

bool X11WindowManager::isShowingDesktop()
{
    return numbersOfRoot("_NET_SHOWING_DESKTOP").value(0) != 0;
}

bool X11WindowManager::hidesUnderFullScreen(xcb_window_t window, const QRect &screen)
{
    const xcb_window_t active = activeWindow();
    return (active != window && isFullScreen(active, screen)) ||
           isFullScreen(topWindow(window, screen), screen);
}

/// Old programs just make a frameless window as large as the screen. The window on which file
/// managers show their icons is as large, too.
bool X11WindowManager::isFullScreen(xcb_window_t window, const QRect &screen)
{
    if (window == XCB_WINDOW_NONE)
        return false;
    if (numbers(window, "_NET_WM_STATE").contains(m_properties.atom("_NET_WM_STATE_FULLSCREEN")))
        return placeOf(window).intersects(screen);
    return placeOf(window).contains(screen) &&
           !numbers(window, "_NET_WM_WINDOW_TYPE")
                .contains(m_properties.atom("_NET_WM_WINDOW_TYPE_DESKTOP"));
}

/// None when the manager does not report the order.
xcb_window_t X11WindowManager::topWindow(xcb_window_t except, const QRect &area)
{
    for (const xcb_window_t window : fromTopDown()) {
        if (window != except && isShown(window) && placeOf(window).intersects(area))
            return window;
    }
    return XCB_WINDOW_NONE;
}

bool X11WindowManager::isCovered(xcb_window_t window)
{
    const QList<quint32> windows = fromTopDown();
    const QRect place = placeOf(window);
    return std::any_of(
        windows.begin(), windows.begin() + std::max(windows.indexOf(window), 0LL),
        [&](xcb_window_t other) { return isShown(other) && placeOf(other).intersects(place); });
}

QList<quint32> X11WindowManager::fromTopDown()
{
    QList<quint32> windows = numbersOfRoot("_NET_CLIENT_LIST_STACKING");
    std::reverse(windows.begin(), windows.end());
    return windows;
}

bool X11WindowManager::isShown(xcb_window_t window)
{
    const quint32 desktop = numbers(window, "_NET_WM_DESKTOP").value(0, allDesktops);
    return numbers(window, "WM_STATE").value(0) != iconic &&
           !numbers(window, "_NET_WM_STATE").contains(m_properties.atom("_NET_WM_STATE_HIDDEN")) &&
           (desktop == allDesktops ||
            desktop == numbersOfRoot("_NET_CURRENT_DESKTOP").value(0, desktop));
}

bool X11WindowManager::hasPutAway(xcb_window_t window)
{
    if (numbers(window, "WM_STATE").isEmpty())
        return false;
    const QList<quint32> states = numbers(window, "_NET_WM_STATE");
    return !isShown(window) || states.contains(m_properties.atom("_NET_WM_STATE_SHADED")) ||
           !states.contains(m_properties.atom("_NET_WM_STATE_ABOVE"));
}

/// Some window managers give the keyboard to a window that raises itself, or don't raise it; they
/// obey when a pager restacks the window.
bool X11WindowManager::putOnTop(xcb_window_t window)
{
    const xcb_atom_t message = m_properties.atom("_NET_RESTACK_WINDOW");
    if (!numbersOfRoot("_NET_SUPPORTED").contains(message))
        return !isCovered(window);
    m_properties.request(window, "_NET_RESTACK_WINDOW",
                         {fromUser, XCB_WINDOW_NONE, XCB_STACK_MODE_ABOVE});
    xcb_flush(m_x11.get());
    return true;
}

/// In device pixels of the desktop.
QRect X11WindowManager::placeOf(xcb_window_t window) const
{
    const X11Owned<xcb_get_geometry_reply_t> size(
        xcb_get_geometry_reply(m_x11.get(), xcb_get_geometry(m_x11.get(), window), nullptr));
    const auto cookie = xcb_translate_coordinates(m_x11.get(), window, m_x11.root(), 0, 0);
    const X11Owned<xcb_translate_coordinates_reply_t> corner(
        xcb_translate_coordinates_reply(m_x11.get(), cookie, nullptr));
    m_x11.readEventsSoon();
    if (!size || !corner)
        return {};
    return {corner->dst_x, corner->dst_y, size->width, size->height};
}

QList<quint32> X11WindowManager::numbers(xcb_window_t window, const char *property)
{
    m_x11.readEventsSoon();
    return m_properties.numbers(window, property);
}

QList<quint32> X11WindowManager::numbersOfRoot(const char *property)
{
    return numbers(m_x11.root(), property);
}
