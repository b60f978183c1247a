// SPDX-License-Identifier: MIT
#pragma once

#include <QPoint>
#include <QSize>
#include <QString>

struct wl_display;
struct wl_registry;
struct zwlr_virtual_pointer_manager_v1;
struct zwlr_virtual_pointer_v1;

/// A mouse on a Wayland desktop of the wlroots kind. Each call returns when the compositor has seen
/// it.
class WaylandPointer
{
public:
    /// @param display what WAYLAND_DISPLAY is for the desktop's programs
    /// @param screen the size of its only screen
    WaylandPointer(const QString &display, const QSize &screen);
    ~WaylandPointer();
    Q_DISABLE_COPY_MOVE(WaylandPointer)

    void moveTo(const QPoint &place);
    void press();
    void release();
    void click(const QPoint &place);
    void rightClick(const QPoint &place);

private:
    void showAt(const QPoint &place);
    void setButton(uint32_t button, bool isDown);
    void finish();

    QSize m_screen;
    uint32_t m_time = 0;
    wl_display *m_display;
    wl_registry *m_registry = nullptr;
    zwlr_virtual_pointer_manager_v1 *m_manager = nullptr;
    zwlr_virtual_pointer_v1 *m_pointer = nullptr;
};
