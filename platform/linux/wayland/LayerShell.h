// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <cstdint>
#include <memory>

class QImage;
struct wl_buffer;
struct wl_compositor;
struct wl_display;
struct wl_event_queue;
struct wl_output;
struct wl_region;
struct wl_shm;
struct wl_subcompositor;
struct wl_subsurface;
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

    /// A panel above all other windows.
    /// @param output its screen, or null for the one that the compositor chooses: usually the one
    /// that the user works on
    zwlr_layer_surface_v1 *makePanel(wl_surface *surface, wl_output *output) const;

    xdg_surface *makePopUp(wl_surface *surface) const;
    xdg_positioner *makePositioner() const;

    /// A surface that no window of Qt has. Its events come like those of new roles.
    wl_surface *makeSurface() const;

    /// Makes a surface part of another one, and of its pictures: it changes when that one does.
    wl_subsurface *makePart(wl_surface *surface, wl_surface *whole) const;

    /// Lets the mouse through a surface, from its next content on.
    void ignoreMouse(wl_surface *surface) const;

    /// @param picture in QImage::Format_ARGB32_Premultiplied
    wl_buffer *makeBuffer(const QImage &picture) const;

    /// Sends the requests made so far, and processes the events of new roles until `done`. False if
    /// that does not happen in time.
    bool waitFor(const bool &done,
                 std::chrono::milliseconds longest = std::chrono::seconds(2)) const;

    /// Leaves the events of this role or surface to Qt, which processes them with its own.
    template <typename Object>
    void leaveToQt(Object *object) const
    {
        leaveProxyToQt(object);
    }

private:
    explicit LayerShell(wl_display *display);
    void bindGlobals();
    bool isComplete() const;
    void leaveProxyToQt(void *object) const;

    wl_display *m_display;
    wl_event_queue *m_queue;
    zwlr_layer_shell_v1 *m_layers = nullptr;
    xdg_wm_base *m_popUps = nullptr;
    wl_compositor *m_surfaces = nullptr;
    wl_subcompositor *m_parts = nullptr;
    wl_shm *m_memory = nullptr;
    uint32_t m_version = 0;
};
