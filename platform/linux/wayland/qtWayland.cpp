// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/qtWayland.h"

#include <QGuiApplication>
#include <QLibraryInfo>
#include <QScreen>

#include <qpa/qplatformnativeinterface.h>

namespace
{

/// Calls only virtual functions of it. Linking with functions of Qt's private interface would bind
/// the package to one release of Qt.
QPlatformNativeInterface &native()
{
    return *QGuiApplication::platformNativeInterface();
}

bool isVersionOfBuild()
{
    const QVersionNumber running = QLibraryInfo::version();
    return running.majorVersion() == QT_VERSION_MAJOR && running.minorVersion() == QT_VERSION_MINOR;
}

} // namespace

wl_display *qtWayland::display()
{
    if (QGuiApplication::platformName() != u"wayland" || !isVersionOfBuild())
        return nullptr;
    return static_cast<wl_display *>(native().nativeResourceForIntegration("wl_display"));
}

wl_surface *qtWayland::surface(QWindow &window)
{
    return static_cast<wl_surface *>(native().nativeResourceForWindow("surface", &window));
}

wl_output *qtWayland::output(QScreen &screen)
{
    // The invented one has no size, and no output to ask for.
    if (screen.geometry().isEmpty())
        return nullptr;
    return static_cast<wl_output *>(native().nativeResourceForScreen("output", &screen));
}

wl_seat *qtWayland::seat()
{
    return static_cast<wl_seat *>(native().nativeResourceForIntegration("wl_seat"));
}

uint32_t qtWayland::serial()
{
    return uint32_t(quintptr(native().nativeResourceForIntegration("serial")));
}
