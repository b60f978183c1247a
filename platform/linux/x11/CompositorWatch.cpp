// SPDX-License-Identifier: MIT
#include "platform/linux/x11/CompositorWatch.h"

#include "platform/linux/x11/X11Connection.h"

#include <chrono>
#include <xcb/xfixes.h>

namespace
{

/// Compositors say that they are there before they blend anything, and nothing tells when they do.
/// Until then a transparent window would be seen as a black one.
constexpr std::chrono::milliseconds beginning = std::chrono::seconds(1);

} // namespace

CompositorWatch::CompositorWatch(X11Connection &x11) : m_x11(x11)
{
    if (!m_x11.isAlive())
        return;
    m_beginning.setSingleShot(true);
    m_beginning.setInterval(beginning);
    connect(&m_beginning, &QTimer::timeout, this, &CompositorWatch::changed);
    m_selection = m_x11.atoms({"_NET_WM_CM_S" + QByteArray::number(m_x11.screenNumber())}).first();

    xcb_connection_t *const connection = m_x11.get();
    const auto *extension = xcb_get_extension_data(connection, &xcb_xfixes_id);
    if (!extension || !extension->present)
        return;
    m_changeEvent = extension->first_event + XCB_XFIXES_SELECTION_NOTIFY;
    // The server listens to no other request of the extension before this one.
    const auto cookie = xcb_xfixes_query_version(connection, 1, 0);
    const X11Owned<xcb_xfixes_query_version_reply_t> version(
        xcb_xfixes_query_version_reply(connection, cookie, nullptr));
    xcb_xfixes_select_selection_input(connection, m_x11.root(), m_selection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    xcb_flush(connection);
    connect(&m_x11, &X11Connection::eventArrived, this, &CompositorWatch::readEvent);
    m_x11.readEventsSoon();
}

bool CompositorWatch::isRunning() const
{
    if (!m_x11.isAlive() || m_beginning.isActive())
        return false;
    const auto cookie = xcb_get_selection_owner(m_x11.get(), m_selection);
    const X11Owned<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(m_x11.get(), cookie, nullptr));
    m_x11.readEventsSoon();
    return reply && reply->owner != XCB_NONE;
}

void CompositorWatch::readEvent(const xcb_generic_event_t *event)
{
    if ((event->response_type & 0x7f) != m_changeEvent)
        return;
    const auto *change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t *>(event);
    if (change->selection != m_selection)
        return;
    if (change->owner == XCB_NONE)
        m_beginning.stop();
    else
        m_beginning.start();
    Q_EMIT changed();
}
