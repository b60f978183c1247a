// SPDX-License-Identifier: MIT
#pragma once

#include <cstdint>

class QScreen;
class QWindow;
struct wl_display;
struct wl_output;
struct wl_seat;
struct wl_surface;

/// What Qt's Wayland platform lets a program use of its own connection. Main thread.
namespace qtWayland
{

/// Null if Qt runs on another platform, or if this is another version of Qt than the one that the
/// program was built with: only with that one it is safe to ask for the rest.
wl_display *display();

/// Null while the window has none: Qt makes it with the native window, and destroys it when the
/// window is hidden.
wl_surface *surface(QWindow &window);

/// Null for the one that Qt invents while there is none.
wl_output *output(QScreen &screen);

/// The seat of the user. Call it only after an input event.
wl_seat *seat();

/// Of the last input event.
uint32_t serial();

} // namespace qtWayland
