// SPDX-License-Identifier: MIT
#include "tests/world/WaylandPointer.h"

#include <wlr-virtual-pointer-client.h>

#include <QFile>

#include <wayland-client.h>

namespace
{

/// As the kernel numbers it.
constexpr uint32_t leftButton = 0x110;
constexpr uint32_t rightButton = 0x111;

constexpr uint32_t millisecondsApart = 10;

} // namespace

WaylandPointer::WaylandPointer(const QString &display, const QSize &screen)
    : m_screen(screen), m_display(wl_display_connect(QFile::encodeName(display).constData()))
{
    static const wl_registry_listener listener = {
        .global =
            [](void *data, wl_registry *registry, uint32_t name, const char *interface, uint32_t) {
                if (qstrcmp(interface, zwlr_virtual_pointer_manager_v1_interface.name) == 0)
                    static_cast<WaylandPointer *>(data)->m_manager =
                        static_cast<zwlr_virtual_pointer_manager_v1 *>(wl_registry_bind(
                            registry, name, &zwlr_virtual_pointer_manager_v1_interface, 1));
            },
        .global_remove = [](void *, wl_registry *, uint32_t) {},
    };
    if (!m_display)
        qFatal("there is no Wayland desktop");
    m_registry = wl_display_get_registry(m_display);
    wl_registry_add_listener(m_registry, &listener, this);
    wl_display_roundtrip(m_display);
    if (!m_manager)
        qFatal("this Wayland desktop has no mice for tests");
    m_pointer = zwlr_virtual_pointer_manager_v1_create_virtual_pointer(m_manager, nullptr);
    wl_display_roundtrip(m_display);
}

WaylandPointer::~WaylandPointer()
{
    zwlr_virtual_pointer_v1_destroy(m_pointer);
    zwlr_virtual_pointer_manager_v1_destroy(m_manager);
    wl_registry_destroy(m_registry);
    wl_display_disconnect(m_display);
}

/// In two steps. The X server within the desktop takes a press for one at an old place when the
/// mouse has not moved since it came to the window.
void WaylandPointer::moveTo(const QPoint &place)
{
    showAt(place - QPoint(1, 1));
    showAt(place);
}

void WaylandPointer::press()
{
    setButton(leftButton, true);
}

void WaylandPointer::release()
{
    setButton(leftButton, false);
}

void WaylandPointer::click(const QPoint &place)
{
    moveTo(place);
    press();
    release();
}

void WaylandPointer::rightClick(const QPoint &place)
{
    moveTo(place);
    setButton(rightButton, true);
    setButton(rightButton, false);
}

void WaylandPointer::showAt(const QPoint &place)
{
    zwlr_virtual_pointer_v1_motion_absolute(m_pointer, m_time, uint32_t(place.x()),
                                            uint32_t(place.y()), uint32_t(m_screen.width()),
                                            uint32_t(m_screen.height()));
    finish();
}

void WaylandPointer::setButton(uint32_t button, bool isDown)
{
    zwlr_virtual_pointer_v1_button(m_pointer, m_time, button, isDown ? 1 : 0);
    finish();
}

void WaylandPointer::finish()
{
    zwlr_virtual_pointer_v1_frame(m_pointer);
    wl_display_roundtrip(m_display);
    m_time += millisecondsApart;
}
