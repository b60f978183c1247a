// SPDX-License-Identifier: MIT
#pragma once

#include <QWindow>

#include <memory>

/// What a user can have the window manager of a test's world do with any program's windows.
namespace WindowManager
{

void setFullScreen(WId window, bool fullScreen);

/// Hides all windows, or brings them back.
void showDesktop(bool shown);

} // namespace WindowManager

/// A compositor, which blends transparent windows, from the moment that it runs until the object's
/// end.
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
