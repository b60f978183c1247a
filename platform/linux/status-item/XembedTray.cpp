// SPDX-License-Identifier: MIT
#include "platform/linux/status-item/XembedTray.h"

XembedTray::XembedTray() : m_connection(XCB_EVENT_MASK_STRUCTURE_NOTIFY)
{
    if (!m_connection.isAlive())
        return;
    const QByteArray selection =
        "_NET_SYSTEM_TRAY_S" + QByteArray::number(m_connection.screenNumber());
    const QList<quint32> atoms = m_connection.atoms({"MANAGER", selection});
    m_managerAtom = atoms[0];
    m_selectionAtom = atoms[1];
    connect(&m_connection, &X11Connection::eventArrived, this, &XembedTray::readEvent);
    m_connection.readEventsSoon();
}

bool XembedTray::isThere()
{
    if (!m_connection.isAlive())
        return false;
    const auto cookie = xcb_get_selection_owner_unchecked(m_connection.get(), m_selectionAtom);
    const X11Owned<xcb_get_selection_owner_reply_t> reply(
        xcb_get_selection_owner_reply(m_connection.get(), cookie, nullptr));
    m_connection.readEventsSoon();
    return reply && reply->owner != XCB_WINDOW_NONE;
}

void XembedTray::readEvent(const xcb_generic_event_t *event)
{
    if ((event->response_type & 0x7f) != XCB_CLIENT_MESSAGE)
        return;
    const auto *message = reinterpret_cast<const xcb_client_message_event_t *>(event);
    if (message->type == m_managerAtom && message->data.data32[1] == m_selectionAtom)
        Q_EMIT appeared();
}
