// SPDX-License-Identifier: MIT
#include "platform/FrontmostApplication.h"

#include "platform/linux/applications/FocusHistory.h"
#include "platform/linux/wayland/WaylandFocusSource.h"
#include "platform/linux/x11/X11FocusSource.h"

#include <QGuiApplication>

namespace
{

class UnknownFrontmostApplication : public FrontmostApplication
{
public:
    std::optional<Application> current() override { return std::nullopt; }
};

} // namespace

std::unique_ptr<FrontmostApplication> makeFrontmostApplication()
{
    if (!qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY"))
        return std::make_unique<FocusHistory>(std::make_unique<WaylandFocusSource>());
    if (QGuiApplication::platformName() == u"xcb")
        return std::make_unique<FocusHistory>(std::make_unique<X11FocusSource>(true));
    return std::make_unique<UnknownFrontmostApplication>();
}
