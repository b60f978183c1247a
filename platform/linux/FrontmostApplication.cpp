#include "platform/FrontmostApplication.h"

#include "platform/linux/applications/FocusHistory.h"
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
    if (QGuiApplication::platformName() != u"xcb")
        return std::make_unique<UnknownFrontmostApplication>();
    const bool isWholeDesktop = !qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
    return std::make_unique<FocusHistory>(std::make_unique<X11FocusSource>(isWholeDesktop));
}
