// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11Replies.h"

#include <xcb/xcbext.h>

namespace
{

/// In units of four bytes: longer than any class, id or list of types in use.
constexpr uint32_t longestProperty = 256;

} // namespace

X11Replies::~X11Replies()
{
    for (size_t index = m_replies.size(); index < m_sequences.size(); ++index)
        xcb_discard_reply(m_connection, m_sequences[index]);
}

void X11Replies::askProperty(xcb_window_t window, xcb_atom_t property)
{
    expect(xcb_get_property(m_connection, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0,
                            longestProperty)
               .sequence);
}

bool X11Replies::haveCome()
{
    while (m_replies.size() < m_sequences.size()) {
        void *reply = nullptr;
        xcb_generic_error_t *error = nullptr;
        if (!xcb_poll_for_reply(m_connection, m_sequences[m_replies.size()], &reply, &error))
            return false;
        m_replies.emplace_back(reply);
        std::free(error);
    }
    return true;
}

const xcb_get_property_reply_t *X11Replies::property(size_t index, int format) const
{
    const auto *value = reply<xcb_get_property_reply_t>(index);
    return value && value->format == format && value->bytes_after == 0 ? value : nullptr;
}

QByteArray X11Replies::bytes(size_t index) const
{
    const xcb_get_property_reply_t *value = property(index, 8);
    if (!value)
        return {};
    return {static_cast<const char *>(xcb_get_property_value(value)),
            xcb_get_property_value_length(value)};
}

QList<uint32_t> X11Replies::numbers(size_t index) const
{
    const xcb_get_property_reply_t *value = property(index, 32);
    if (!value)
        return {};
    const auto *numbers = static_cast<const uint32_t *>(xcb_get_property_value(value));
    return {numbers, numbers + xcb_get_property_value_length(value) / int(sizeof(uint32_t))};
}
