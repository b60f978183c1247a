// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/WaylandConnection.h"

#include <QDeadlineTimer>
#include <QSocketNotifier>

#include <algorithm>
#include <poll.h>
#include <utility>

WaylandConnection::WaylandConnection() : m_display(wl_display_connect(nullptr))
{
    if (m_display) {
        m_notifier =
            std::make_unique<QSocketNotifier>(wl_display_get_fd(m_display), QSocketNotifier::Read);
        connect(m_notifier.get(), &QSocketNotifier::activated, this, &WaylandConnection::update);
        askForGlobals();
    } else {
        QMetaObject::invokeMethod(this, &WaylandConnection::globalsKnown, Qt::QueuedConnection);
    }
}

WaylandConnection::~WaylandConnection()
{
    m_notifier.reset();
    if (m_globalsSync)
        wl_callback_destroy(m_globalsSync);
    if (m_registry)
        wl_registry_destroy(m_registry);
    if (m_display)
        wl_display_disconnect(m_display);
}

void WaylandConnection::askForGlobals()
{
    static const wl_registry_listener registryListener = {
        .global =
            [](void *data, wl_registry *, uint32_t name, const char *interface, uint32_t version) {
                static_cast<WaylandConnection *>(data)->m_globals.insert(interface,
                                                                         {name, version});
            },
        .global_remove =
            [](void *data, wl_registry *, uint32_t name) {
                static_cast<WaylandConnection *>(data)->m_globals.removeIf(
                    [name](const auto &global) { return global.value().name == name; });
            },
    };
    static const wl_callback_listener syncListener = {
        .done = [](void *data, wl_callback *,
                   uint32_t) { Q_EMIT static_cast<WaylandConnection *>(data)->globalsKnown(); },
    };
    m_registry = wl_display_get_registry(m_display);
    wl_registry_add_listener(m_registry, &registryListener, this);
    m_globalsSync = sync();
    wl_callback_add_listener(m_globalsSync, &syncListener, this);
    flush();
}

void *WaylandConnection::bindGlobal(const wl_interface &interface, uint32_t version) const
{
    const auto global = m_globals.constFind(interface.name);
    if (!isAlive() || global == m_globals.cend())
        return nullptr;
    return wl_registry_bind(m_registry, global->name, &interface,
                            std::min(version, global->version));
}

bool WaylandConnection::waitForInput(const QDeadlineTimer &deadline)
{
    if (!isAlive() || deadline.hasExpired())
        return false;
    pollfd input = {wl_display_get_fd(m_display), POLLIN, 0};
    if (::poll(&input, 1, int(deadline.remainingTime())) <= 0)
        return false;
    update();
    return isAlive();
}

void WaylandConnection::update()
{
    if (!isAlive())
        return;
    if (!readEvents())
        return end();
    Q_EMIT inputRead();
    flush();
}

/// Reads the socket once: a compositor that never stops sending must not block this thread.
bool WaylandConnection::readEvents()
{
    while (wl_display_prepare_read(m_display) != 0) {
        if (wl_display_dispatch_pending(m_display) < 0)
            return false;
    }
    pollfd input = {wl_display_get_fd(m_display), POLLIN, 0};
    if (::poll(&input, 1, 0) <= 0)
        wl_display_cancel_read(m_display);
    else if (wl_display_read_events(m_display) < 0)
        return false;
    return wl_display_dispatch_pending(m_display) >= 0;
}

void WaylandConnection::flush()
{
    if (isAlive())
        wl_display_flush(m_display);
}

/// Objects on the connection stay until their owners destroy them, but nothing more arrives.
void WaylandConnection::end()
{
    m_hasEnded = true;
    m_notifier->setEnabled(false);
}
