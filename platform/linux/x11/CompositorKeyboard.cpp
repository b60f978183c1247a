// SPDX-License-Identifier: MIT
#include "platform/linux/x11/CompositorKeyboard.h"

#include "platform/linux/x11/X11Connection.h"

#include <QWindow>

#include <chrono>

using namespace std::chrono_literals;

namespace
{

/// Compositors give a new window the keyboard as they show it.
constexpr auto longestWait = 300ms;

/// Leaves what else this connection listens to at the window.
void listenTo(X11Connection &x11, xcb_window_t window, quint32 event, bool listens)
{
    const auto cookie = xcb_get_window_attributes(x11.get(), window);
    const X11Owned<xcb_get_window_attributes_reply_t> reply(
        xcb_get_window_attributes_reply(x11.get(), cookie, nullptr));
    x11.readEventsSoon();
    if (!reply)
        return;
    const quint32 events =
        listens ? reply->your_event_mask | event : reply->your_event_mask & ~event;
    xcb_change_window_attributes(x11.get(), window, XCB_CW_EVENT_MASK, &events);
}

} // namespace

CompositorKeyboard::CompositorKeyboard(X11Connection &x11)
    : m_x11(x11), m_properties(x11.get(), x11.root())
{
    m_patience.setSingleShot(true);
    connect(&m_patience, &QTimer::timeout, this, &CompositorKeyboard::takeUnmanaged);
    connect(&m_x11, &X11Connection::eventArrived, this, &CompositorKeyboard::readEvent);
}

bool CompositorKeyboard::isWith(const QWindow &window) const
{
    return m_invisible && m_window == &window;
}

void CompositorKeyboard::take(QWindow &window)
{
    if (isWith(window))
        return;
    giveBack();
    m_window = &window;
    appear(Manager::Manages);
    m_patience.start(longestWait);
}

void CompositorKeyboard::giveBack()
{
    m_patience.stop();
    if (!m_invisible)
        return;
    if (m_window) {
        m_window->setKeyboardGrabEnabled(false);
        listenTo(m_x11, xcb_window_t(m_window->winId()), XCB_EVENT_MASK_LEAVE_WINDOW, false);
    }
    m_invisible.reset();
}

void CompositorKeyboard::appear(Manager manager)
{
    m_invisible = std::make_unique<TransparentWindow>(m_x11, manager);
    describe(m_invisible->id());
    listenTo(m_x11, m_invisible->id(), XCB_EVENT_MASK_FOCUS_CHANGE, true);
    xcb_map_window(m_x11.get(), m_invisible->id());
    xcb_flush(m_x11.get());
}

/// A frameless dialogue of fixed size that accepts the keyboard: compositors that tile windows let
/// dialogues float.
void CompositorKeyboard::describe(xcb_window_t invisible)
{
    constexpr quint32 inputHint = 1;
    constexpr quint32 decorationsHint = 2;
    constexpr quint32 leastAndGreatestSize = 16 | 32;
    m_properties.set(invisible, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM,
                     m_properties.atoms({"_NET_WM_WINDOW_TYPE_DIALOG"}));
    m_properties.set(invisible, "WM_HINTS", XCB_ATOM_WM_HINTS, {inputHint, 1, 0, 0, 0, 0, 0, 0, 0});
    m_properties.set(invisible, "WM_NORMAL_HINTS", XCB_ATOM_WM_SIZE_HINTS,
                     {leastAndGreatestSize, 0, 0, 0, 0, 1, 1, 1, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    m_properties.set(invisible, "_MOTIF_WM_HINTS", m_properties.atom("_MOTIF_WM_HINTS"),
                     {decorationsHint, 0, 0, 0, 0});
    m_properties.set(
        invisible, "_NET_WM_STATE", XCB_ATOM_ATOM,
        m_properties.atoms({"_NET_WM_STATE_SKIP_TASKBAR", "_NET_WM_STATE_SKIP_PAGER"}));
}

void CompositorKeyboard::takeUnmanaged()
{
    if (!m_window)
        return giveBack();
    appear(Manager::Ignores);
    m_window->setKeyboardGrabEnabled(true);
    listenTo(m_x11, xcb_window_t(m_window->winId()), XCB_EVENT_MASK_LEAVE_WINDOW, true);
    xcb_flush(m_x11.get());
}

void CompositorKeyboard::readEvent(const xcb_generic_event_t *event)
{
    const int type = event->response_type & 0x7f;
    if (type == XCB_FOCUS_IN || type == XCB_FOCUS_OUT) {
        readFocus(*reinterpret_cast<const xcb_focus_in_event_t *>(event), type == XCB_FOCUS_IN);
    } else if (type == XCB_LEAVE_NOTIFY && m_window) {
        const auto &left = *reinterpret_cast<const xcb_leave_notify_event_t *>(event);
        if (left.event == m_window->winId() && left.mode == XCB_NOTIFY_MODE_NORMAL)
            giveBack();
    }
}

/// The server also reports that our window takes the keys over.
void CompositorKeyboard::readFocus(const xcb_focus_in_event_t &event, bool hasIt)
{
    if (!m_invisible || event.event != m_invisible->id() || event.mode == XCB_NOTIFY_MODE_GRAB ||
        event.mode == XCB_NOTIFY_MODE_UNGRAB)
        return;
    if (!hasIt || !m_window)
        return giveBack();
    m_patience.stop();
    m_window->setKeyboardGrabEnabled(true);
}
