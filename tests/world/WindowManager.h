// SPDX-License-Identifier: MIT
#pragma once

#include <QWindow>

#include <memory>
#include <xcb/xcb.h>

/// What a user can make the window manager of a test's world do to any program's windows.
namespace WindowManager
{

void setFullScreen(WId window, bool fullScreen);

/// Hides all windows, or brings them back.
void showDesktop(bool shown);

/// Sends the window to another workspace; the first one is number 0.
void sendToWorkspace(WId window, quint32 workspace);

/// A window manager too busy to do anything, from now until this object is destroyed.
class Standstill
{
public:
    Standstill();
    ~Standstill();
    Q_DISABLE_COPY_MOVE(Standstill)
};

} // namespace WindowManager

/// A compositor, which blends transparent windows. It runs from the end of the constructor until
/// this object is destroyed.
class Compositor
{
public:
    Compositor();
    ~Compositor();
    Q_DISABLE_COPY_MOVE(Compositor)

    static bool isRunning();

private:
    struct Process;
    std::unique_ptr<Process> m_process;
};

/// A compositor that only announces itself and never draws anything.
class IdleCompositor
{
public:
    IdleCompositor();
    ~IdleCompositor();
    Q_DISABLE_COPY_MOVE(IdleCompositor)

    /// Keeps all windows off the screen, as a compositor does that draws them itself.
    void takeWindows();

private:
    xcb_connection_t *m_connection;
    quint32 m_root = 0;
};
