// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <memory>

class QScreen;
class QWindow;

/// Makes a window a floating panel: above other windows, on all workspaces, in no task bar or
/// pager, shown without taking the focus. Serves one window. Main thread.
class PanelWindow : public QObject
{
    Q_OBJECT
public:
    /// The type that the window must be made with so that it stays when the user turns to another
    /// application.
    virtual Qt::WindowType windowType() const = 0;

    /// The screen that new panels belong on: where the user is working, as far as the desktop
    /// tells. Null when there is no screen.
    virtual QScreen *screen() const = 0;

    /// Called once for each native window, before it is shown. Its content is a rectangle with
    /// corners rounded by this radius, in points: the window gets a soft shadow where transparency
    /// shows, and has its corners cut off where it does not. Neither changes the window's place or
    /// size. A native window that was hidden is not shown again.
    virtual void prepare(QWindow &window, double cornerRadius) = 0;

    /// Brings the shown window in front of the others, full-screen ones included where the desktop
    /// allows that, and leaves the keyboard where it is. False when it can't be done with this
    /// native window, for instance because the user has minimised it: then another one has to be
    /// made and shown.
    virtual bool bringToFront(QWindow &window) = 0;

    /// Gives the window the keyboard, because the user has clicked into it. No other click does.
    virtual void takeFocus(QWindow &window) = 0;

    /// Gives the keyboard back to where it was before the window took it. To be called before the
    /// window is hidden; nothing happens when it has not got the keyboard.
    virtual void giveFocusBack(QWindow &window) = 0;

    /// Whether what is transparent in a window lets those behind it through. Where it does not it
    /// is black. Read afresh.
    virtual bool showsTransparency() const = 0;

Q_SIGNALS:
    /// `showsTransparency()` may have changed.
    void transparencyChanged();
};

std::unique_ptr<PanelWindow> makePanelWindow();
