// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11Properties.h"

#include "platform/linux/x11/X11Connection.h"

#include <algorithm>

namespace
{

constexpr uint32_t longest = 512;

} // namespace

X11Properties::X11Properties(xcb_connection_t *connection, xcb_window_t root)
    : m_connection(connection), m_root(root)
{
}

xcb_atom_t X11Properties::atom(const char *name)
{
    const auto known = m_atoms.constFind(name);
    if (known != m_atoms.constEnd())
        return *known;
    const auto cookie =
        xcb_intern_atom(m_connection, false, static_cast<uint16_t>(std::strlen(name)), name);
    const X11Owned<xcb_intern_atom_reply_t> reply(
        xcb_intern_atom_reply(m_connection, cookie, nullptr));
    return reply ? m_atoms[name] = reply->atom : xcb_atom_t(XCB_ATOM_NONE);
}

QList<quint32> X11Properties::atoms(std::initializer_list<const char *> names)
{
    QList<quint32> found;
    for (const char *name : names)
        found.append(atom(name));
    return found;
}

QList<quint32> X11Properties::numbers(xcb_window_t window, const char *property)
{
    const auto cookie = xcb_get_property_unchecked(m_connection, false, window, atom(property),
                                                   XCB_GET_PROPERTY_TYPE_ANY, 0, longest);
    const X11Owned<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply || reply->format != 32)
        return {};
    const auto *values = static_cast<const quint32 *>(xcb_get_property_value(reply.get()));
    return {values, values + xcb_get_property_value_length(reply.get()) / int(sizeof(quint32))};
}

QByteArray X11Properties::bytes(xcb_window_t window, const char *property)
{
    const auto cookie = xcb_get_property_unchecked(m_connection, false, window, atom(property),
                                                   XCB_GET_PROPERTY_TYPE_ANY, 0, longest);
    const X11Owned<xcb_get_property_reply_t> reply(
        xcb_get_property_reply(m_connection, cookie, nullptr));
    if (!reply || reply->format != 8)
        return {};
    return {static_cast<const char *>(xcb_get_property_value(reply.get())),
            xcb_get_property_value_length(reply.get())};
}

void X11Properties::set(xcb_window_t window, const char *property, xcb_atom_t type,
                        const QList<quint32> &values)
{
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, atom(property), type, 32,
                        static_cast<uint32_t>(values.size()), values.constData());
}

void X11Properties::request(xcb_window_t window, const char *message,
                            std::initializer_list<quint32> values)
{
    xcb_client_message_event_t event = {};
    event.response_type = XCB_CLIENT_MESSAGE;
    event.format = 32;
    event.window = window;
    event.type = atom(message);
    std::copy(values.begin(), values.end(), event.data.data32);
    xcb_send_event(m_connection, false, m_root,
                   XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT,
                   reinterpret_cast<const char *>(&event));
}
