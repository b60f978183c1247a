// SPDX-License-Identifier: MIT
#include "platform/linux/x11/CompositorWatch.h"

#include "platform/linux/x11/X11Connection.h"

#include <array>
#include <xcb/composite.h>
#include <xcb/xfixes.h>

CompositorWatch::CompositorWatch(X11Connection &x11) : m_x11(x11)
{
    if (!m_x11.isAlive())
        return;
    m_selection = m_x11.atoms({"_NET_WM_CM_S" + QByteArray::number(m_x11.screenNumber())}).first();
    if (!hasCompositors())
        return;
    createProbe();
    watchSelection();
    connect(&m_x11, &X11Connection::eventArrived, this, &CompositorWatch::readEvent);
    m_x11.readEventsSoon();
}

CompositorWatch::~CompositorWatch()
{
    if (m_probe != XCB_WINDOW_NONE)
        xcb_destroy_window(m_x11.get(), m_probe);
}

/// The server answers no request of an extension before the one for its version. Pictures of
/// windows came with version 0.2.
bool CompositorWatch::hasCompositors()
{
    const auto *extension = xcb_get_extension_data(m_x11.get(), &xcb_composite_id);
    if (!extension || !extension->present)
        return false;
    const auto cookie = xcb_composite_query_version(m_x11.get(), 0, 2);
    const X11Owned<xcb_composite_query_version_reply_t> version(
        xcb_composite_query_version_reply(m_x11.get(), cookie, nullptr));
    return version && (version->major_version > 0 || version->minor_version >= 2);
}

/// When a compositor takes over a window's picture, or gives it up again, the server shows the
/// window anew and reports that.
void CompositorWatch::createProbe()
{
    xcb_connection_t *const connection = m_x11.get();
    m_probe = xcb_generate_id(connection);
    const std::array<uint32_t, 2> values = {1, XCB_EVENT_MASK_EXPOSURE |
                                                   XCB_EVENT_MASK_VISIBILITY_CHANGE};
    xcb_create_window(connection, XCB_COPY_FROM_PARENT, m_probe, m_x11.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT,
                      XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK, values.data());
    xcb_map_window(connection, m_probe);
    xcb_flush(connection);
}

void CompositorWatch::watchSelection()
{
    const auto *extension = xcb_get_extension_data(m_x11.get(), &xcb_xfixes_id);
    if (!extension || !extension->present)
        return;
    m_ownerEvent = extension->first_event + XCB_XFIXES_SELECTION_NOTIFY;
    const auto cookie = xcb_xfixes_query_version(m_x11.get(), 1, 0);
    const X11Owned<xcb_xfixes_query_version_reply_t> version(
        xcb_xfixes_query_version_reply(m_x11.get(), cookie, nullptr));
    xcb_xfixes_select_selection_input(m_x11.get(), m_x11.root(), m_selection,
                                      XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_WINDOW_DESTROY |
                                          XCB_XFIXES_SELECTION_EVENT_MASK_SELECTION_CLIENT_CLOSE);
    xcb_flush(m_x11.get());
}

bool CompositorWatch::isRunning() const
{
    return m_x11.isAlive() && isOwned() && isProbeRedirected();
}

bool CompositorWatch::isOwned() const
{
    const auto cookie = xcb_get_selection_owner(m_x11.get(), m_selection);
    const X11Owned<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(m_x11.get(), cookie, nullptr));
    m_x11.readEventsSoon();
    return reply && reply->owner != XCB_NONE;
}

/// Only a window with a picture of its own can give it a name.
bool CompositorWatch::isProbeRedirected() const
{
    if (m_probe == XCB_WINDOW_NONE)
        return false;
    const xcb_pixmap_t picture = xcb_generate_id(m_x11.get());
    const auto cookie = xcb_composite_name_window_pixmap_checked(m_x11.get(), m_probe, picture);
    const X11Owned<xcb_generic_error_t> error(xcb_request_check(m_x11.get(), cookie));
    m_x11.readEventsSoon();
    if (error)
        return false;
    xcb_free_pixmap(m_x11.get(), picture);
    return true;
}

void CompositorWatch::readEvent(const xcb_generic_event_t *event)
{
    const int type = event->response_type & 0x7f;
    const bool isOfProbe =
        (type == XCB_EXPOSE &&
         reinterpret_cast<const xcb_expose_event_t *>(event)->window == m_probe) ||
        (type == XCB_VISIBILITY_NOTIFY &&
         reinterpret_cast<const xcb_visibility_notify_event_t *>(event)->window == m_probe);
    const bool isOfSelection =
        type == m_ownerEvent &&
        reinterpret_cast<const xcb_xfixes_selection_notify_event_t *>(event)->selection ==
            m_selection;
    if (isOfProbe || isOfSelection)
        Q_EMIT changed();
}
