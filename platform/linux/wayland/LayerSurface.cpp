// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/LayerSurface.h"

#include "platform/linux/wayland/LayerShell.h"

#include <wlr-layer-shell-client.h>

#include <utility>
#include <wayland-client-protocol.h>

namespace
{

uint32_t valueOf(LayerSurface::Keyboard keyboard)
{
    switch (keyboard) {
    case LayerSurface::Keyboard::Now:
        return ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_EXCLUSIVE;
    case LayerSurface::Keyboard::ByClick:
        return ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_ON_DEMAND;
    case LayerSurface::Keyboard::Never:
        break;
    }
    return ZWLR_LAYER_SURFACE_V1_KEYBOARD_INTERACTIVITY_NONE;
}

} // namespace

LayerSurface::LayerSurface(const LayerShell &shell, wl_surface *surface, wl_output *output)
    : m_shell(shell), m_surface(surface), m_role(shell.makePanel(surface, output))
{
    static const auto self = [](void *data) { return static_cast<LayerSurface *>(data); };
    static const zwlr_layer_surface_v1_listener listener = {
        .configure =
            [](void *data, zwlr_layer_surface_v1 *role, uint32_t serial, uint32_t, uint32_t) {
                zwlr_layer_surface_v1_ack_configure(role, serial);
                self(data)->m_isConfigured = true;
                self(data)->m_isAnswered = true;
            },
        .closed =
            [](void *data, zwlr_layer_surface_v1 *) {
                self(data)->m_isClosed = true;
                self(data)->m_isAnswered = true;
                Q_EMIT self(data)->closed();
            },
    };
    zwlr_layer_surface_v1_add_listener(m_role, &listener, this);
}

LayerSurface::~LayerSurface()
{
    zwlr_layer_surface_v1_destroy(m_role);
}

void LayerSurface::setPlace(const CornerPlace &place)
{
    const CornerPlace former = std::exchange(m_place, place);
    if (former == place)
        return;
    zwlr_layer_surface_v1_set_size(m_role, uint32_t(place.size.width()),
                                   uint32_t(place.size.height()));
    zwlr_layer_surface_v1_set_anchor(
        m_role,
        (place.isAtTop ? ZWLR_LAYER_SURFACE_V1_ANCHOR_TOP : ZWLR_LAYER_SURFACE_V1_ANCHOR_BOTTOM) |
            (place.isAtLeft ? ZWLR_LAYER_SURFACE_V1_ANCHOR_LEFT
                            : ZWLR_LAYER_SURFACE_V1_ANCHOR_RIGHT));
    // Those at the other edges do not count.
    zwlr_layer_surface_v1_set_margin(m_role, place.fromEnd, place.fromSide, place.fromEnd,
                                     place.fromSide);
    if (m_isConfigured && former.size == place.size)
        wl_surface_commit(m_surface);
}

void LayerSurface::setKeyboard(Keyboard keyboard)
{
    if (std::exchange(m_keyboard, keyboard) == keyboard)
        return;
    zwlr_layer_surface_v1_set_keyboard_interactivity(m_role, valueOf(keyboard));
    wl_surface_commit(m_surface);
}

bool LayerSurface::appear()
{
    wl_surface_commit(m_surface);
    m_shell.waitFor(m_isAnswered);
    m_shell.leaveToQt(m_role);
    return m_isConfigured && !m_isClosed;
}

void LayerSurface::adopt(xdg_popup *popUp)
{
    zwlr_layer_surface_v1_get_popup(m_role, popUp);
}
