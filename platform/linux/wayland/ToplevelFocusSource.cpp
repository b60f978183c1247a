// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/ToplevelFocusSource.h"

#include "platform/linux/wayland/WaylandConnection.h"

#include <wlr-foreign-toplevel-client.h>

#include <algorithm>

namespace
{

constexpr uint32_t newestVersion = 3;

bool holds(const wl_array *states, uint32_t state)
{
    const auto *begin = static_cast<const uint32_t *>(states->data);
    const uint32_t *end = begin + states->size / sizeof(uint32_t);
    return std::find(begin, end, state) != end;
}

} // namespace

std::unique_ptr<ToplevelFocusSource> ToplevelFocusSource::make(WaylandConnection &connection)
{
    auto *manager = connection.bind<zwlr_foreign_toplevel_manager_v1>(
        zwlr_foreign_toplevel_manager_v1_interface, newestVersion);
    if (!manager)
        return nullptr;
    return std::unique_ptr<ToplevelFocusSource>(new ToplevelFocusSource(connection, manager));
}

ToplevelFocusSource::ToplevelFocusSource(WaylandConnection &connection,
                                         zwlr_foreign_toplevel_manager_v1 *manager)
    : m_connection(connection), m_manager(manager)
{
    static const zwlr_foreign_toplevel_manager_v1_listener listener = {
        .toplevel = [](void *data, zwlr_foreign_toplevel_manager_v1 *,
                       Handle *handle) { static_cast<ToplevelFocusSource *>(data)->add(handle); },
        .finished = [](void *, zwlr_foreign_toplevel_manager_v1 *) {},
    };
    zwlr_foreign_toplevel_manager_v1_add_listener(m_manager, &listener, this);
    connect(&m_connection, &WaylandConnection::inputRead, this, &ToplevelFocusSource::report);
    m_connection.flush();
}

ToplevelFocusSource::~ToplevelFocusSource()
{
    for (const auto &[handle, toplevel] : m_toplevels)
        zwlr_foreign_toplevel_handle_v1_destroy(handle);
    zwlr_foreign_toplevel_manager_v1_destroy(m_manager);
}

void ToplevelFocusSource::update()
{
    m_connection.update();
}

void ToplevelFocusSource::add(Handle *handle)
{
    static const auto self = [](void *data) { return static_cast<ToplevelFocusSource *>(data); };
    static const zwlr_foreign_toplevel_handle_v1_listener listener = {
        .title = [](void *, Handle *, const char *) {},
        .app_id = [](void *data, Handle *changed,
                     const char *id) { self(data)->m_toplevels[changed].id = id; },
        .output_enter = [](void *, Handle *, wl_output *) {},
        .output_leave = [](void *, Handle *, wl_output *) {},
        .state =
            [](void *data, Handle *changed, wl_array *states) {
                self(data)->m_toplevels[changed].isActivated =
                    holds(states, ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_ACTIVATED);
            },
        .done = [](void *data, Handle *changed) { self(data)->takeIn(changed); },
        .closed = [](void *data, Handle *closed) { self(data)->remove(closed); },
        .parent = [](void *, Handle *, Handle *) {},
    };
    m_toplevels.try_emplace(handle);
    zwlr_foreign_toplevel_handle_v1_add_listener(handle, &listener, this);
}

void ToplevelFocusSource::takeIn(Handle *handle)
{
    if (m_toplevels[handle].isActivated)
        m_active = handle;
    else if (m_active == handle)
        m_active = nullptr;
    else
        return;
    m_hasChanged = true;
}

void ToplevelFocusSource::remove(Handle *handle)
{
    m_toplevels.erase(handle);
    zwlr_foreign_toplevel_handle_v1_destroy(handle);
    if (m_active != handle)
        return;
    m_active = nullptr;
    m_hasChanged = true;
}

void ToplevelFocusSource::report()
{
    if (!std::exchange(m_hasChanged, false))
        return;
    if (!m_active)
        return Q_EMIT focusChanged(std::nullopt);
    FocusedWindow window;
    window.instance = QString::fromUtf8(m_toplevels[m_active].id);
    window.windowClass = window.instance;
    Q_EMIT focusChanged(window);
}
