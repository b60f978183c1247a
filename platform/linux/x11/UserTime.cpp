// SPDX-License-Identifier: MIT
#include "platform/linux/x11/UserTime.h"

#include "platform/linux/x11/qtConnection.h"

#include <QCoreApplication>

#include <utility>

UserTime::UserTime()
{
    QCoreApplication::instance()->installNativeEventFilter(this);
}

UserTime::~UserTime()
{
    QCoreApplication::instance()->removeNativeEventFilter(this);
}

void UserTime::renew(Continuation goOn)
{
    xcb_connection_t *const connection = qtConnection();
    if (!connection) {
        QMetaObject::invokeMethod(
            QCoreApplication::instance(), [goOn] { goOn(0); }, Qt::QueuedConnection);
        return;
    }
    if (!m_window) {
        m_window = std::make_unique<QWindow>();
        m_window->create();
    }
    m_waiting.push_back(std::move(goOn));
    const auto id = static_cast<xcb_window_t>(m_window->winId());
    xcb_change_property(connection, XCB_PROP_MODE_APPEND, id, XCB_ATOM_WM_COMMAND, XCB_ATOM_STRING,
                        8, 0, nullptr);
    xcb_flush(connection);
}

bool UserTime::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (m_waiting.empty() || eventType != "xcb_generic_event_t")
        return false;
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    if ((event->response_type & 0x7f) != XCB_PROPERTY_NOTIFY)
        return false;
    const auto *change = reinterpret_cast<const xcb_property_notify_event_t *>(event);
    if (change->window == m_window->winId() && change->atom == XCB_ATOM_WM_COMMAND) {
        // Queued, because Qt reads the time from the event only after this.
        for (const auto &goOn : std::exchange(m_waiting, {}))
            QMetaObject::invokeMethod(
                m_window.get(), [goOn, time = change->time] { goOn(time); }, Qt::QueuedConnection);
    }
    return false;
}
