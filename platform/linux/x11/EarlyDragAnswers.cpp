// SPDX-License-Identifier: MIT
#include "platform/linux/x11/EarlyDragAnswers.h"

#include "platform/linux/x11/X11Connection.h"
#include "platform/linux/x11/qtConnection.h"

#include <QCoreApplication>

#include <cstring>

using namespace Qt::StringLiterals;

namespace
{

/// More than this would have to be sent in pieces, which Qt does.
constexpr qsizetype largestAnswer = 65'536;

xcb_atom_t atomOf(xcb_connection_t *connection, const QByteArray &name)
{
    const auto cookie = xcb_intern_atom(connection, false, uint16_t(name.size()), name.constData());
    const X11Owned<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(connection, cookie, nullptr));
    return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

QString nameOf(xcb_connection_t *connection, xcb_atom_t atom)
{
    const X11Owned<xcb_get_atom_name_reply_t> reply(
        xcb_get_atom_name_reply(connection, xcb_get_atom_name(connection, atom), nullptr));
    if (!reply)
        return {};
    return QString::fromLatin1(xcb_get_atom_name_name(reply.get()),
                               xcb_get_atom_name_name_length(reply.get()));
}

} // namespace

EarlyDragAnswers::EarlyDragAnswers(const QMimeData &data)
    : m_data(data), m_connection(qtConnection())
{
    if (!m_connection)
        return;
    m_dragSelection = atomOf(m_connection, "XdndSelection"_ba);
    QCoreApplication::instance()->installNativeEventFilter(this);
}

EarlyDragAnswers::~EarlyDragAnswers()
{
    // Without an application object there is no list of filters either.
    if (m_connection && QCoreApplication::instance())
        QCoreApplication::instance()->removeNativeEventFilter(this);
}

bool EarlyDragAnswers::nativeEventFilter(const QByteArray &eventType, void *message, qintptr *)
{
    if (eventType != "xcb_generic_event_t")
        return false;
    const auto *event = static_cast<const xcb_generic_event_t *>(message);
    if ((event->response_type & 0x7f) != XCB_SELECTION_REQUEST)
        return false;
    const auto *request = reinterpret_cast<const xcb_selection_request_event_t *>(event);
    return request->selection == m_dragSelection && answer(*request);
}

/// False if Qt is to answer.
bool EarlyDragAnswers::answer(const xcb_selection_request_event_t &request) const
{
    const QString format = nameOf(m_connection, request.target);
    if (format == u"TARGETS") {
        QList<xcb_atom_t> atoms = {request.target};
        for (const QString &offered : m_data.formats())
            atoms.append(atomOf(m_connection, offered.toLatin1()));
        send(request, {XCB_ATOM_ATOM, 32, uint32_t(atoms.size()), atoms.constData()});
        return true;
    }
    const QByteArray bytes = m_data.hasFormat(format) ? m_data.data(format) : QByteArray();
    if (bytes.isEmpty() || bytes.size() > largestAnswer)
        return false;
    send(request, {request.target, 8, uint32_t(bytes.size()), bytes.constData()});
    return true;
}

void EarlyDragAnswers::send(const xcb_selection_request_event_t &request, const Value &value) const
{
    // Old programs name no property.
    const xcb_atom_t property =
        request.property == XCB_ATOM_NONE ? request.target : request.property;
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, request.requestor, property,
                        value.type, value.unit, value.count, value.data);
    xcb_selection_notify_event_t notice = {};
    notice.response_type = XCB_SELECTION_NOTIFY;
    notice.time = request.time;
    notice.requestor = request.requestor;
    notice.selection = request.selection;
    notice.target = request.target;
    notice.property = property;
    // The server always reads the size of the largest event.
    char event[32] = {};
    static_assert(sizeof notice <= sizeof event);
    std::memcpy(event, &notice, sizeof notice);
    xcb_send_event(m_connection, false, request.requestor, XCB_EVENT_MASK_NO_EVENT, event);
    xcb_flush(m_connection);
}
