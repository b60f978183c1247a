// SPDX-License-Identifier: MIT
#include "platform/FrontmostApplication.h"

#import <AppKit/AppKit.h>

namespace
{

std::optional<Application> describe(NSRunningApplication *application)
{
    if (!application.localizedName)
        return std::nullopt;
    Application described = {QString::fromNSString(application.localizedName), std::nullopt};
    if (application.bundleIdentifier)
        described.bundleIdentifier = QString::fromNSString(application.bundleIdentifier);
    return described;
}

class WorkspaceFrontmostApplication : public FrontmostApplication
{
public:
    WorkspaceFrontmostApplication()
    {
        // Both come on the main thread, one after the other, so the block never runs on a destroyed
        // object.
        m_observer = [NSWorkspace.sharedWorkspace.notificationCenter
            addObserverForName:NSWorkspaceDidActivateApplicationNotification
                        object:nil
                         queue:NSOperationQueue.mainQueue
                    usingBlock:^(NSNotification *notification) {
                      announce(notification.userInfo[NSWorkspaceApplicationKey]);
                    }];
    }

    ~WorkspaceFrontmostApplication() override
    {
        [NSWorkspace.sharedWorkspace.notificationCenter removeObserver:m_observer];
    }

    std::optional<Application> current() override
    {
        return describe(NSWorkspace.sharedWorkspace.frontmostApplication);
    }

private:
    void announce(id activatedOne)
    {
        if (![activatedOne isKindOfClass:NSRunningApplication.class])
            return;
        if (const std::optional<Application> application = describe(activatedOne))
            Q_EMIT activated(*application);
    }

    id m_observer;
};

} // namespace

std::unique_ptr<FrontmostApplication> makeFrontmostApplication()
{
    return std::make_unique<WorkspaceFrontmostApplication>();
}
