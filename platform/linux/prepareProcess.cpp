// SPDX-License-Identifier: MIT
#include "platform/prepareProcess.h"

#include <QCoreApplication>
#include <QSocketNotifier>
#include <QtGlobal>

#include <csignal>
#include <fcntl.h>
#include <unistd.h>

namespace
{

/// A Wayland compositor does not let an ordinary window choose its position, stay above others or
/// be on all workspaces. XWayland lets the tray do all three, so the program uses it unless the
/// user has chosen otherwise.
void preferX11()
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") && !qEnvironmentVariableIsEmpty("DISPLAY"))
        qputenv("QT_QPA_PLATFORM", "xcb");
}

/// Lets the tray be a panel of a Wayland compositor: Qt then leaves windows with
/// Qt::BypassWindowManagerHint to the program. It affects no other window.
void leavePanelsToProgram()
{
    qputenv("QT_WAYLAND_USE_BYPASSWINDOWMANAGERHINT", "1");
}

/// Several recognitions run in parallel, each on one core; an engine that uses all cores slows all
/// of them down.
void keepEnginesOnOneCore()
{
    qputenv("OMP_THREAD_LIMIT", "1");
}

/// Some decoders write complaints about damaged pictures directly to standard error. A debug build
/// shows them, and what sanitizers report there.
void silenceLibraries()
{
#ifdef NDEBUG
    const int nowhere = ::open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere >= 0) {
        ::dup2(nowhere, STDERR_FILENO);
        ::close(nowhere);
    }
#endif
}

/// Connects the signal handler to the event loop: writing to a pipe is all that it may safely do.
int terminationPipe[2] = {-1, -1};

void requestTermination(int)
{
    [[maybe_unused]] const ssize_t written = ::write(terminationPipe[1], "q", 1);
}

} // namespace

void prepareProcess()
{
    preferX11();
    leavePanelsToProgram();
    keepEnginesOnOneCore();
    silenceLibraries();
}

void quitWhenTerminated(QCoreApplication &application)
{
    if (::pipe2(terminationPipe, O_CLOEXEC | O_NONBLOCK) != 0)
        return;
    auto *notifier = new QSocketNotifier(terminationPipe[0], QSocketNotifier::Read, &application);
    QObject::connect(notifier, &QSocketNotifier::activated, &application, &QCoreApplication::quit);
    struct sigaction action = {};
    action.sa_handler = requestTermination;
    action.sa_flags = SA_RESTART;
    for (const int signal : {SIGTERM, SIGINT, SIGHUP})
        ::sigaction(signal, &action, nullptr);
}
