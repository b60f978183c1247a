// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>
#include <memory>

struct wl_display;
struct wl_event_queue;
struct wl_surface;
struct xdg_positioner;
struct xdg_surface;
struct xdg_wm_base;
struct zwlr_layer_shell_v1;
struct zwlr_layer_surface_v1;

/// The part of a compositor that places panels, on Qt's own connection. It gives roles to surfaces
/// of windows for which Qt has been told to leave that to the program: those with
/// Qt::BypassWindowManagerHint. The events of a new role come only during waitFor(), until they are
/// left to Qt. Main thread; roles must be destroyed before it.
class LayerShell
{
public:
    /// Null when the compositor places no panels, or Qt can't leave it to the program.
    static std::unique_ptr<LayerShell> find();

    ~LayerShell();
    LayerShell(const LayerShell &) = delete;
    LayerShell &operator=(const LayerShell &) = delete;

    /// Whether a click can move the keyboard to a panel, and another one away from it. Otherwise a
    /// panel can only ask for it.
    bool movesKeyboardByClick() const { return m_version >= 4; }

    /// A panel above all other windows, on the screen that the compositor chooses: the one that the
    /// user works on.
    zwlr_layer_surface_v1 *makePanel(wl_surface *surface) const;

    xdg_surface *makePopUp(wl_surface *surface) const;
    xdg_positioner *makePositioner() const;

    /// Sends the requests made so far, and processes the events of new roles until `done`. False if
    /// that does not happen within a second or so.
    bool waitFor(const bool &done) const;

    /// Leaves the events of this role to Qt, which processes them with its own.
    template <typename Role>
    void leaveToQt(Role *role) const
    {
        leaveProxyToQt(role);
    }

private:
    explicit LayerShell(wl_display *display);
    void bindGlobals();
    void leaveProxyToQt(void *role) const;

    wl_display *m_display;
    wl_event_queue *m_queue;
    zwlr_layer_shell_v1 *m_layers = nullptr;
    xdg_wm_base *m_popUps = nullptr;
    uint32_t m_version = 0;
};
