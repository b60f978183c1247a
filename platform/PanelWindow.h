#pragma once

#include <memory>

class QWindow;

/// Makes a window a floating panel: above other windows, on all workspaces, in no task bar or
/// pager, shown without taking the focus. Main thread.
class PanelWindow
{
public:
    virtual ~PanelWindow() = default;

    /// Called before each time that the window is shown; the native window exists.
    virtual void prepare(QWindow &window) = 0;

    /// Gives the window the keyboard, because the user has clicked into it.
    virtual void takeFocus(QWindow &window) = 0;
};

std::unique_ptr<PanelWindow> makePanelWindow();
