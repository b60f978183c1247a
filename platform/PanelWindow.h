#pragma once

#include <qnamespace.h>

#include <memory>

class QWindow;

/// Makes a window a floating panel: above other windows, on all workspaces, in no task bar or
/// pager, shown without taking the focus. Main thread.
class PanelWindow
{
public:
    virtual ~PanelWindow() = default;

    /// The type that the window must be made with so that it stays when the user turns to another
    /// application.
    virtual Qt::WindowType windowType() const = 0;

    /// Called before each time that the window is shown; the native window exists.
    virtual void prepare(QWindow &window) = 0;

    /// Brings the shown window in front of the others, whatever application is active, and leaves
    /// the keyboard where it is.
    virtual void bringToFront(QWindow &window) = 0;

    /// Gives the window the keyboard, because the user has clicked into it.
    virtual void takeFocus(QWindow &window) = 0;

    /// Whether what is transparent in a window lets those behind it through. Where it does not it
    /// is black. Read afresh.
    virtual bool showsTransparency() const = 0;
};

std::unique_ptr<PanelWindow> makePanelWindow();
