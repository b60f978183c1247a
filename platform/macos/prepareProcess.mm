// SPDX-License-Identifier: MIT
#include "platform/prepareProcess.h"

#include "platform/macos/reopening/ReopenDelegate.h"

#include <QCoreApplication>

#include <csignal>
#include <dispatch/dispatch.h>
#include <fcntl.h>
#include <unistd.h>

namespace
{

/// The application's reference to its delegate is weak.
VelmoraReopenDelegate *reopenDelegate = nil;

/// Gives the program an icon in the Dock, windows that can take the keyboard, and a light look
/// whatever the system's setting is. The shared object exists from here on, and Qt uses it as it
/// is.
void prepareApplication()
{
    NSApplication *application = NSApplication.sharedApplication;
    [application setActivationPolicy:NSApplicationActivationPolicyRegular];
    application.appearance = [NSAppearance appearanceNamed:NSAppearanceNameAqua];
    reopenDelegate = [[VelmoraReopenDelegate alloc] init];
    application.delegate = reopenDelegate;
}

/// Frameworks complain directly to standard error.
void silenceLibraries()
{
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere >= 0) {
        ::dup2(nowhere, STDERR_FILENO);
        ::close(nowhere);
    }
}

} // namespace

void prepareProcess()
{
    @autoreleasepool {
        silenceLibraries();
        prepareApplication();
    }
}

/// When AppKit ends the program, at log-out or from the Dock's menu, Qt is notified anyway.
void quitWhenTerminated(QCoreApplication &application)
{
    static NSMutableArray<dispatch_source_t> *sources = [NSMutableArray array];
    QCoreApplication *const quitting = &application;
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        // The source gets a signal that would otherwise end the process.
        ::signal(signal, SIG_IGN);
        dispatch_source_t source =
            dispatch_source_create(DISPATCH_SOURCE_TYPE_SIGNAL, static_cast<uintptr_t>(signal), 0,
                                   dispatch_get_main_queue());
        dispatch_source_set_event_handler(source, ^{
          quitting->quit();
        });
        dispatch_resume(source);
        [sources addObject:source];
    }
}
