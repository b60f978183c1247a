// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/LayerShell.h"

#include "platform/linux/wayland/qtWayland.h"

#include <wlr-layer-shell-client.h>

#include <QDeadlineTimer>

#include <algorithm>
#include <chrono>
#include <poll.h>
#include <wayland-client.h>
#include <xdg-shell-client.h>

using namespace std::chrono_literals;

namespace
{

constexpr uint32_t newestVersion = 4;
constexpr auto longestWait = 2s;

wl_proxy *proxyOf(void *object)
{
    return static_cast<wl_proxy *>(object);
}

/// What is made by the wrapper begins its life on that queue, so that no event is missed.
template <typename Object>
auto onQueue(Object *object, wl_event_queue *queue)
{
    auto *wrapper = static_cast<Object *>(wl_proxy_create_wrapper(object));
    wl_proxy_set_queue(proxyOf(wrapper), queue);
    return std::unique_ptr<Object, decltype(&wl_proxy_wrapper_destroy)>(wrapper,
                                                                        wl_proxy_wrapper_destroy);
}

struct Globals {
    uint32_t layers = 0;
    uint32_t layersVersion = 0;
    uint32_t popUps = 0;
};

void noteGlobal(void *data, wl_registry *, uint32_t name, const char *interface, uint32_t version)
{
    auto &globals = *static_cast<Globals *>(data);
    if (qstrcmp(interface, zwlr_layer_shell_v1_interface.name) == 0) {
        globals.layers = name;
        globals.layersVersion = std::min(version, newestVersion);
    } else if (qstrcmp(interface, xdg_wm_base_interface.name) == 0) {
        globals.popUps = name;
    }
}

} // namespace

std::unique_ptr<LayerShell> LayerShell::find()
{
    if (!qEnvironmentVariableIsSet("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT"))
        return nullptr;
    wl_display *const display = qtWayland::display();
    if (!display)
        return nullptr;
    std::unique_ptr<LayerShell> shell(new LayerShell(display));
    return shell->m_layers && shell->m_popUps ? std::move(shell) : nullptr;
}

LayerShell::LayerShell(wl_display *display)
    : m_display(display), m_queue(wl_display_create_queue(display))
{
    bindGlobals();
}

LayerShell::~LayerShell()
{
    if (m_popUps)
        xdg_wm_base_destroy(m_popUps);
    if (m_layers && m_version >= ZWLR_LAYER_SHELL_V1_DESTROY_SINCE_VERSION)
        zwlr_layer_shell_v1_destroy(m_layers);
    else if (m_layers)
        wl_proxy_destroy(proxyOf(m_layers));
    wl_event_queue_destroy(m_queue);
}

void LayerShell::bindGlobals()
{
    static const wl_registry_listener listener = {
        .global = noteGlobal,
        .global_remove = [](void *, wl_registry *, uint32_t) {},
    };
    Globals globals;
    wl_registry *registry = wl_display_get_registry(onQueue(m_display, m_queue).get());
    wl_registry_add_listener(registry, &listener, &globals);
    wl_display_roundtrip_queue(m_display, m_queue);
    m_version = globals.layersVersion;
    if (globals.layers)
        m_layers = static_cast<zwlr_layer_shell_v1 *>(
            wl_registry_bind(registry, globals.layers, &zwlr_layer_shell_v1_interface, m_version));
    if (globals.popUps) {
        static const xdg_wm_base_listener pings = {
            .ping = [](void *, xdg_wm_base *base, uint32_t serial) {
                xdg_wm_base_pong(base, serial);
            }};
        m_popUps = static_cast<xdg_wm_base *>(
            wl_registry_bind(registry, globals.popUps, &xdg_wm_base_interface, 1));
        xdg_wm_base_add_listener(m_popUps, &pings, nullptr);
        leaveToQt(m_popUps);
    }
    wl_registry_destroy(registry);
}

zwlr_layer_surface_v1 *LayerShell::makePanel(wl_surface *surface) const
{
    return zwlr_layer_shell_v1_get_layer_surface(onQueue(m_layers, m_queue).get(), surface, nullptr,
                                                 ZWLR_LAYER_SHELL_V1_LAYER_OVERLAY, "velmora");
}

xdg_surface *LayerShell::makePopUp(wl_surface *surface) const
{
    return xdg_wm_base_get_xdg_surface(onQueue(m_popUps, m_queue).get(), surface);
}

xdg_positioner *LayerShell::makePositioner() const
{
    return xdg_wm_base_create_positioner(m_popUps);
}

/// Qt reads from the connection on another thread at the same time.
bool LayerShell::waitFor(const bool &done) const
{
    const QDeadlineTimer deadline(longestWait);
    while (!done && !deadline.hasExpired()) {
        if (wl_display_prepare_read_queue(m_display, m_queue) != 0) {
            wl_display_dispatch_queue_pending(m_display, m_queue);
            continue;
        }
        wl_display_flush(m_display);
        pollfd input = {wl_display_get_fd(m_display), POLLIN, 0};
        if (::poll(&input, 1, int(deadline.remainingTime())) <= 0)
            wl_display_cancel_read(m_display);
        else if (wl_display_read_events(m_display) < 0)
            return false;
        if (wl_display_dispatch_queue_pending(m_display, m_queue) < 0)
            return false;
    }
    return done;
}

void LayerShell::leaveProxyToQt(void *role) const
{
    wl_proxy_set_queue(proxyOf(role), nullptr);
    wl_display_dispatch_queue_pending(m_display, m_queue);
}
