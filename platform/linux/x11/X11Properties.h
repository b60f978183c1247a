// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>

#include <initializer_list>
#include <xcb/xcb.h>

/// Reads and writes the properties and messages between windows and their manager, over a
/// connection that it does not own. Main thread.
///
/// libxcb-ewmh would not be shorter, and it reads without a limit: from a window that another
/// program has given 4 MB of states, it fetches 4 MB.
class X11Properties
{
public:
    X11Properties(xcb_connection_t *connection, xcb_window_t root);

    /// Asks the server only once for each.
    xcb_atom_t atom(const char *name);
    QList<quint32> atoms(std::initializer_list<const char *> names);

    /// A property of integers, at most 512 of them; empty when the window has none.
    QList<quint32> numbers(xcb_window_t window, const char *property);

    /// A text's bytes, at most 2048 of them; empty when the window has none.
    QByteArray bytes(xcb_window_t window, const char *property);

    void set(xcb_window_t window, const char *property, xcb_atom_t type,
             const QList<quint32> &values);

    /// Sends the window manager a request about a window.
    void request(xcb_window_t window, const char *message, std::initializer_list<quint32> values);

    xcb_window_t root() const { return m_root; }

private:
    xcb_connection_t *m_connection;
    xcb_window_t m_root;
    QHash<QByteArray, xcb_atom_t> m_atoms;
};
