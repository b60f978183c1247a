// SPDX-License-Identifier: MIT
#pragma once

#include <QSize>

#include <vector>

class LayerShell;
struct wl_buffer;
struct wl_subsurface;
struct wl_surface;

/// The soft shadow around a panel: a part of its surface that extends beyond its edges and lets the
/// mouse through. Main thread; destroy it before the panel's surface.
class PanelShadow
{
public:
    /// @param cornerRadius of the panel, in points
    PanelShadow(const LayerShell &shell, wl_surface *panel, double cornerRadius);
    ~PanelShadow();
    PanelShadow(const PanelShadow &) = delete;
    PanelShadow &operator=(const PanelShadow &) = delete;

    /// Seen from the panel's next content on.
    /// @param panel its size, in points
    /// @param scale device pixels per point
    void draw(QSize panel, int scale);

private:
    wl_buffer *makeBuffer(QSize panel, int scale);
    void release(wl_buffer *buffer);

    const LayerShell &m_shell;
    double m_cornerRadius;
    wl_surface *m_surface;
    wl_subsurface *m_part;
    QSize m_drawnSize;
    int m_drawnScale = 0;
    /// Those that the compositor may still read from.
    std::vector<wl_buffer *> m_buffers;
};
