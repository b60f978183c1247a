// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/LayerShell.h"

#include "filesystem/Descriptor.h"
#include "platform/linux/wayland/qtWayland.h"

#include <wlr-layer-shell-client.h>

#include <QDeadlineTimer>
#include <QHash>
#include <QImage>

#include <algorithm>
#include <poll.h>
#include <sys/mman.h>
#include <unistd.h>
#include <wayland-client.h>
#include <xdg-shell-client.h>

namespace
{

constexpr uint32_t newestVersion = 4;

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

/// What the compositor offers, by its name.
struct Global {
    uint32_t name = 0;
    uint32_t version = 0;
};
using Globals = QHash<QByteArray, Global>;

void noteGlobal(void *data, wl_registry *, uint32_t name, const char *interface, uint32_t version)
{
    static_cast<Globals *>(data)->insert(interface, {name, version});
}

/// Null if there is none.
template <typename Object>
Object *bind(wl_registry *registry, const Globals &globals, const wl_interface &interface,
             uint32_t newest)
{
    const Global found = globals.value(interface.name);
    if (found.version == 0)
        return nullptr;
    return static_cast<Object *>(
        wl_registry_bind(registry, found.name, &interface, std::min(found.version, newest)));
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
    return shell->isComplete() ? std::move(shell) : nullptr;
}

LayerShell::LayerShell(wl_display *display)
    : m_display(display), m_queue(wl_display_create_queue(display))
{
    bindGlobals();
}

LayerShell::~LayerShell()
{
    for (wl_proxy *each : {proxyOf(m_surfaces), proxyOf(m_parts), proxyOf(m_memory)})
        if (each)
            wl_proxy_destroy(each);
    if (m_popUps)
        xdg_wm_base_destroy(m_popUps);
    if (m_layers && m_version >= ZWLR_LAYER_SHELL_V1_DESTROY_SINCE_VERSION)
        zwlr_layer_shell_v1_destroy(m_layers);
    else if (m_layers)
        wl_proxy_destroy(proxyOf(m_layers));
    wl_event_queue_destroy(m_queue);
}

/// Not those that Qt has bound: a newer Qt may know events of them that this program doesn't.
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
    m_version = std::min(newestVersion, globals[zwlr_layer_shell_v1_interface.name].version);
    m_layers =
        bind<zwlr_layer_shell_v1>(registry, globals, zwlr_layer_shell_v1_interface, newestVersion);
    m_popUps = bind<xdg_wm_base>(registry, globals, xdg_wm_base_interface, 1);
    m_surfaces = bind<wl_compositor>(registry, globals, wl_compositor_interface, 4);
    m_parts = bind<wl_subcompositor>(registry, globals, wl_subcompositor_interface, 1);
    m_memory = bind<wl_shm>(registry, globals, wl_shm_interface, 1);
    wl_registry_destroy(registry);
    if (m_popUps) {
        static const xdg_wm_base_listener pings = {
            .ping = [](void *, xdg_wm_base *base, uint32_t serial) {
                xdg_wm_base_pong(base, serial);
            }};
        xdg_wm_base_add_listener(m_popUps, &pings, nullptr);
        leaveToQt(m_popUps);
    }
}

bool LayerShell::isComplete() const
{
    return m_layers && m_popUps && m_surfaces && m_parts && m_memory;
}

zwlr_layer_surface_v1 *LayerShell::makePanel(wl_surface *surface, wl_output *output) const
{
    return zwlr_layer_shell_v1_get_layer_surface(onQueue(m_layers, m_queue).get(), surface, output,
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

wl_surface *LayerShell::makeSurface() const
{
    return wl_compositor_create_surface(m_surfaces);
}

wl_subsurface *LayerShell::makePart(wl_surface *surface, wl_surface *whole) const
{
    return wl_subcompositor_get_subsurface(m_parts, surface, whole);
}

void LayerShell::ignoreMouse(wl_surface *surface) const
{
    wl_region *const nothing = wl_compositor_create_region(m_surfaces);
    wl_surface_set_input_region(surface, nothing);
    wl_region_destroy(nothing);
}

wl_buffer *LayerShell::makeBuffer(const QImage &picture) const
{
    const qsizetype size = picture.sizeInBytes();
    const Descriptor memory(::memfd_create("velmora", MFD_CLOEXEC));
    if (::write(memory.number(), picture.constBits(), size_t(size)) != size)
        return nullptr;
    wl_shm_pool *const pool = wl_shm_create_pool(m_memory, memory.number(), int32_t(size));
    wl_buffer *const buffer =
        wl_shm_pool_create_buffer(pool, 0, picture.width(), picture.height(),
                                  int32_t(picture.bytesPerLine()), WL_SHM_FORMAT_ARGB8888);
    wl_shm_pool_destroy(pool);
    return buffer;
}

/// Qt reads from the connection on another thread at the same time.
bool LayerShell::waitFor(const bool &done, std::chrono::milliseconds longest) const
{
    const QDeadlineTimer deadline(longest);
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

void LayerShell::leaveProxyToQt(void *object) const
{
    wl_proxy_set_queue(proxyOf(object), nullptr);
    wl_display_dispatch_queue_pending(m_display, m_queue);
}
