// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/PopUpSurface.h"

#include "platform/linux/wayland/LayerShell.h"
#include "platform/linux/wayland/LayerSurface.h"
#include "platform/linux/wayland/qtWayland.h"

#include <wayland-client-protocol.h>
#include <xdg-shell-client.h>

PopUpSurface::PopUpSurface(const LayerShell &shell, wl_surface *surface)
    : m_shell(shell), m_surface(surface), m_role(shell.makePopUp(surface))
{
    static const xdg_surface_listener listener = {
        .configure =
            [](void *data, xdg_surface *role, uint32_t serial) {
                xdg_surface_ack_configure(role, serial);
                static_cast<PopUpSurface *>(data)->m_isConfigured = true;
            },
    };
    xdg_surface_add_listener(m_role, &listener, this);
}

PopUpSurface::~PopUpSurface()
{
    if (m_popUp)
        xdg_popup_destroy(m_popUp);
    xdg_surface_destroy(m_role);
}

bool PopUpSurface::appear(const QRect &place, LayerSurface &panel, const PopUpSurface *parent,
                          Input input)
{
    static const xdg_popup_listener listener = {
        .configure = [](void *, xdg_popup *, int32_t, int32_t, int32_t, int32_t) {},
        .popup_done = [](void *data,
                         xdg_popup *) { Q_EMIT static_cast<PopUpSurface *>(data)->closed(); },
    };
    xdg_positioner *const positioner = m_shell.makePositioner();
    xdg_positioner_set_size(positioner, place.width(), place.height());
    xdg_positioner_set_anchor_rect(positioner, place.x(), place.y(), 1, 1);
    xdg_positioner_set_anchor(positioner, XDG_POSITIONER_EDGE_TOP_LEFT);
    xdg_positioner_set_gravity(positioner, XDG_POSITIONER_EDGE_BOTTOM_RIGHT);
    xdg_positioner_set_constraint_adjustment(positioner,
                                             XDG_POSITIONER_CONSTRAINT_ADJUSTMENT_SLIDE_X |
                                                 XDG_POSITIONER_CONSTRAINT_ADJUSTMENT_SLIDE_Y |
                                                 XDG_POSITIONER_CONSTRAINT_ADJUSTMENT_FLIP_X |
                                                 XDG_POSITIONER_CONSTRAINT_ADJUSTMENT_FLIP_Y);
    m_popUp = xdg_surface_get_popup(m_role, parent ? parent->m_role : nullptr, positioner);
    xdg_positioner_destroy(positioner);
    xdg_popup_add_listener(m_popUp, &listener, this);
    if (!parent)
        panel.adopt(m_popUp);
    if (input == Input::Grabbed)
        xdg_popup_grab(m_popUp, qtWayland::seat(), qtWayland::serial());
    else
        m_shell.ignoreMouse(m_surface);
    wl_surface_commit(m_surface);
    m_shell.waitFor(m_isConfigured);
    m_shell.leaveToQt(m_popUp);
    m_shell.leaveToQt(m_role);
    return m_isConfigured;
}
