// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/PanelShadow.h"

#include "platform/linux/shadow/softShadow.h"
#include "platform/linux/wayland/LayerShell.h"

#include <algorithm>
#include <limits>
#include <wayland-client-protocol.h>

PanelShadow::PanelShadow(const LayerShell &shell, wl_surface *panel, double cornerRadius)
    : m_shell(shell)
    , m_cornerRadius(cornerRadius)
    , m_surface(shell.makeSurface())
    , m_part(shell.makePart(m_surface, panel))
{
    m_shell.leaveToQt(m_surface);
    m_shell.ignoreMouse(m_surface);
    wl_subsurface_place_below(m_part, panel);
    wl_subsurface_set_position(m_part, -shadowReach, -shadowReach);
}

PanelShadow::~PanelShadow()
{
    wl_subsurface_destroy(m_part);
    wl_surface_destroy(m_surface);
    for (wl_buffer *buffer : m_buffers)
        wl_buffer_destroy(buffer);
}

void PanelShadow::draw(QSize panel, int scale)
{
    if (m_drawnSize == panel && m_drawnScale == scale)
        return;
    m_drawnSize = panel;
    m_drawnScale = scale;
    wl_surface_set_buffer_scale(m_surface, scale);
    wl_surface_attach(m_surface, makeBuffer(panel, scale), 0, 0);
    constexpr int all = std::numeric_limits<int32_t>::max();
    wl_surface_damage_buffer(m_surface, 0, 0, all, all);
    wl_surface_commit(m_surface);
}

wl_buffer *PanelShadow::makeBuffer(QSize panel, int scale)
{
    static const wl_buffer_listener listener = {
        .release = [](void *data,
                      wl_buffer *buffer) { static_cast<PanelShadow *>(data)->release(buffer); },
    };
    wl_buffer *const buffer = m_shell.makeBuffer(softShadow(panel * scale, m_cornerRadius, scale));
    if (!buffer)
        return nullptr;
    wl_buffer_add_listener(buffer, &listener, this);
    m_shell.leaveToQt(buffer);
    m_buffers.push_back(buffer);
    return buffer;
}

void PanelShadow::release(wl_buffer *buffer)
{
    m_buffers.erase(std::find(m_buffers.begin(), m_buffers.end(), buffer));
    wl_buffer_destroy(buffer);
}
