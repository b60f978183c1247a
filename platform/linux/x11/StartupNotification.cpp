// SPDX-License-Identifier: MIT
#include "platform/linux/x11/StartupNotification.h"

#include "platform/linux/x11/X11Connection.h"

#include <QGuiApplication>

#include <algorithm>

namespace
{

/// What one message of the protocol holds.
constexpr qsizetype piece = 20;

/// A value in quotes, as the protocol writes it.
QByteArray quoted(const QByteArray &value)
{
    QByteArray result = "\"";
    for (const char character : value) {
        if (character == '"' || character == '\\')
            result += '\\';
        result += character;
    }
    return result + '"';
}

xcb_window_t makeSender(const X11Connection &x11)
{
    const xcb_window_t sender = xcb_generate_id(x11.get());
    const uint32_t overrideRedirect = 1;
    xcb_create_window(x11.get(), XCB_COPY_FROM_PARENT, sender, x11.root(), -1, -1, 1, 1, 0,
                      XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT,
                      &overrideRedirect);
    return sender;
}

/// To all that listen on the root window, in pieces; the end is a zero byte.
void broadcast(X11Connection &x11, const QByteArray &text)
{
    const QList<quint32> atoms = x11.atoms({"_NET_STARTUP_INFO_BEGIN", "_NET_STARTUP_INFO"});
    xcb_client_message_event_t message = {};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 8;
    message.window = makeSender(x11);
    message.type = atoms[0];
    const QByteArray bytes = text + '\0';
    for (qsizetype sent = 0; sent < bytes.size(); sent += piece) {
        std::fill(std::begin(message.data.data8), std::end(message.data.data8), 0);
        const qsizetype length = std::min(piece, bytes.size() - sent);
        std::copy_n(bytes.constData() + sent, length, message.data.data8);
        xcb_send_event(x11.get(), 0, x11.root(), XCB_EVENT_MASK_PROPERTY_CHANGE,
                       reinterpret_cast<const char *>(&message));
        message.type = atoms[1];
    }
    // A round trip: the messages are out before the connection ends.
    x11.atoms({"_NET_STARTUP_INFO"});
}

} // namespace

void StartupNotification::end(const QString &startupId)
{
    if (startupId.isEmpty() || QGuiApplication::platformName() != u"xcb")
        return;
    X11Connection x11(XCB_EVENT_MASK_NO_EVENT);
    if (x11.isAlive())
        broadcast(x11, "remove: ID=" + quoted(startupId.toUtf8()));
}
