// SPDX-License-Identifier: MIT
#include "platform/linux/x11/StartupNotification.h"

#include "platform/linux/x11/X11Connection.h"

#include <QGuiApplication>

// With this the library's users accept that its interface may change; it has not since 2011.
#define SN_API_NOT_YET_FROZEN
#include <libsn/sn.h>

namespace
{

struct Unreference {
    void operator()(SnDisplay *display) const { sn_display_unref(display); }
    void operator()(SnLauncheeContext *launchee) const { sn_launchee_context_unref(launchee); }
};

} // namespace

void StartupNotification::end(const QString &startupId)
{
    if (startupId.isEmpty() || QGuiApplication::platformName() != u"xcb")
        return;
    X11Connection x11(XCB_EVENT_MASK_NO_EVENT);
    if (!x11.isAlive())
        return;
    const std::unique_ptr<SnDisplay, Unreference> display(
        sn_xcb_display_new(x11.get(), nullptr, nullptr));
    const std::unique_ptr<SnLauncheeContext, Unreference> launchee(
        sn_launchee_context_new(display.get(), x11.screenNumber(), startupId.toUtf8().constData()));
    sn_launchee_context_complete(launchee.get());
    // A round trip, so that the message is sent before the connection ends.
    x11.atoms({"_NET_STARTUP_INFO"});
}
