// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11Connection.h"

#include <QDeadlineTimer>
#include <QSocketNotifier>

#include <poll.h>
#include <utility>

void X11Connection::Disconnect::operator()(xcb_connection_t *connection) const
{
    xcb_disconnect(connection);
}

X11Connection::X11Connection(quint32 rootEvents)
    : m_connection(xcb_connect(nullptr, &m_screenNumber))
{
    if (!isAlive())
        return;
    auto screen = xcb_setup_roots_iterator(xcb_get_setup(get()));
    for (int skipped = 0; skipped < m_screenNumber && screen.rem > 1; ++skipped)
        xcb_screen_next(&screen);
    m_root = screen.data->root;
    xcb_change_window_attributes(get(), m_root, XCB_CW_EVENT_MASK, &rootEvents);
    xcb_flush(get());
    m_notifier =
        std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(get()), QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &X11Connection::readEvents);
}

X11Connection::~X11Connection() = default;

bool X11Connection::isAlive() const
{
    return xcb_connection_has_error(get()) == 0;
}

QList<quint32> X11Connection::atoms(std::initializer_list<QByteArray> names)
{
    QList<xcb_intern_atom_cookie_t> cookies;
    for (const QByteArray &name : names)
        cookies.append(xcb_intern_atom_unchecked(get(), 0, static_cast<uint16_t>(name.size()),
                                                 name.constData()));
    QList<quint32> atoms;
    for (const xcb_intern_atom_cookie_t cookie : cookies) {
        const X11Owned<xcb_intern_atom_reply_t> reply(
            xcb_intern_atom_reply(get(), cookie, nullptr));
        atoms.append(reply ? reply->atom : quint32(XCB_ATOM_NONE));
    }
    return atoms;
}

void X11Connection::readEventsSoon()
{
    if (std::exchange(m_willRead, true))
        return;
    const auto read = [this] {
        m_willRead = false;
        readEvents();
    };
    QMetaObject::invokeMethod(this, read, Qt::QueuedConnection);
}

bool X11Connection::waitForInput(const QDeadlineTimer &deadline)
{
    pollfd input = {xcb_get_file_descriptor(get()), POLLIN, 0};
    if (!isAlive() || deadline.hasExpired() ||
        ::poll(&input, 1, int(deadline.remainingTime())) <= 0)
        return false;
    readEvents();
    return isAlive();
}

/// Reads the socket only once: a server that never stops sending must not block this thread.
void X11Connection::readEvents()
{
    X11Owned<xcb_generic_event_t> event(xcb_poll_for_event(get()));
    while (event) {
        Q_EMIT eventArrived(event.get());
        event.reset(xcb_poll_for_queued_event(get()));
    }
    if (!isAlive()) {
        if (m_notifier)
            m_notifier->setEnabled(false);
        return;
    }
    Q_EMIT inputRead();
}
