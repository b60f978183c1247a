// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/X11Connection.h"

#include <QByteArray>
#include <QList>

#include <vector>

/// Replies to requests that were sent together, taken without waiting. Replies that come after this
/// object was destroyed are discarded. Main thread.
class X11Replies
{
public:
    /// The connection must outlive this object.
    explicit X11Replies(xcb_connection_t *connection) : m_connection(connection) {}
    ~X11Replies();
    Q_DISABLE_COPY_MOVE(X11Replies)

    /// Asks for a window's property; at most a kilobyte is read.
    void askProperty(xcb_window_t window, xcb_atom_t property);

    /// Expects the reply to a request sent with a call that reports errors.
    void expect(unsigned int sequence) { m_sequences.push_back(sequence); }

    /// Whether all replies have come. Never blocks.
    bool haveCome();

    /// The reply to the request with this number, counted from 0; null when it failed. All replies
    /// must have come.
    template <typename Reply>
    const Reply *reply(size_t index) const
    {
        return static_cast<const Reply *>(m_replies[index].get());
    }

    /// A property's value; empty when it is missing, of another type or longer than a kilobyte.
    QByteArray bytes(size_t index) const;
    QList<uint32_t> numbers(size_t index) const;

private:
    const xcb_get_property_reply_t *property(size_t index, int format) const;

    xcb_connection_t *m_connection;
    std::vector<unsigned int> m_sequences;
    std::vector<X11Owned<void>> m_replies;
};
