// SPDX-License-Identifier: MIT
#include "platform/RunningInstance.h"

#include "platform/macos/reopening/ReopenDelegate.h"

#include <chrono>

namespace
{

using namespace std::chrono_literals;

constexpr std::chrono::nanoseconds answerLimit = 2s;

/// The system records no date for a program that was started by its path. Of two such programs, the
/// one with the lower process id is the older, until ids wrap around.
bool isElder(NSRunningApplication *one, NSRunningApplication *other)
{
    if (one.launchDate && other.launchDate)
        return [one.launchDate compare:other.launchDate] == NSOrderedAscending;
    return one.processIdentifier < other.processIdentifier;
}

/// A copy of the program that started before this process.
NSRunningApplication *elderInstance()
{
    NSRunningApplication *own = NSRunningApplication.currentApplication;
    NSString *identifier = NSBundle.mainBundle.bundleIdentifier;
    if (!identifier)
        return nil;
    for (NSRunningApplication *other in
         [NSRunningApplication runningApplicationsWithBundleIdentifier:identifier]) {
        const bool isOther = other.processIdentifier != own.processIdentifier;
        if (isOther && !other.terminated && isElder(other, own))
            return other;
    }
    return nil;
}

/// The Dock does the same: it opens the bundle of a program that is running.
void askToReopen(NSRunningApplication *instance)
{
    if (!instance.bundleURL)
        return;
    dispatch_semaphore_t answered = dispatch_semaphore_create(0);
    [NSWorkspace.sharedWorkspace openApplicationAtURL:instance.bundleURL
                                        configuration:[NSWorkspaceOpenConfiguration configuration]
                                    completionHandler:^(NSRunningApplication *, NSError *) {
                                      dispatch_semaphore_signal(answered);
                                    }];
    dispatch_semaphore_wait(answered, dispatch_time(DISPATCH_TIME_NOW, answerLimit.count()));
}

/// The system starts a bundle only once and notifies the running copy of each further opening. What
/// is left is a start by the program's own path.
class BundleRunningInstance : public RunningInstance
{
public:
    BundleRunningInstance()
    {
        m_observer = [NSNotificationCenter.defaultCenter addObserverForName:velmoraReopened
                                                                     object:nil
                                                                      queue:nil
                                                                 usingBlock:^(NSNotification *) {
                                                                   Q_EMIT reopened();
                                                                 }];
    }

    ~BundleRunningInstance() override
    {
        [NSNotificationCenter.defaultCenter removeObserver:m_observer];
    }

    bool claim() override
    {
        NSRunningApplication *instance = elderInstance();
        if (!instance)
            return true;
        askToReopen(instance);
        return false;
    }

private:
    id m_observer;
};

} // namespace

std::unique_ptr<RunningInstance> makeRunningInstance()
{
    return std::make_unique<BundleRunningInstance>();
}
