// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QScreen>
#include <QWindow>

#include <memory>

/// Makes a window a floating panel: above other windows, on all workspaces, in no task bar or
/// pager, shown without taking the focus. Serves one window. Main thread.
class PanelWindow : public QObject
{
    Q_OBJECT
public:
    /// The type to create the window with, so that it stays visible when the user switches to
    /// another application.
    virtual Qt::WindowType windowType() const = 0;

    /// The screen for new panels: the one that the user works on, as far as the desktop reports it.
    /// Null when there is no screen.
    virtual QScreen *screen() const = 0;

    /// The part of a screen that no desktop bar covers.
    virtual QRect visibleFrame(const QScreen &screen) const { return screen.availableGeometry(); }

    /// Says where the window is to be. Call it before `prepare()` and with each change, besides
    /// moving the window: there are desktops on which windows can't move themselves.
    virtual void setFrame(const QRect &) {}

    /// Where the window is, as far as the program can know.
    virtual QRect frame(const QWindow &window) const { return window.geometry(); }

    /// Call it once for each native window, before showing it. The window's content is a rectangle
    /// with corners rounded by this radius, in points. Where transparency shows, the window gets a
    /// soft shadow; elsewhere its corners are cut off. Neither changes the window's position or
    /// size. A native window that was hidden is not shown again.
    virtual void prepare(QWindow &window, double cornerRadius) = 0;

    /// Brings the shown window in front of the others, even of full-screen ones where the desktop
    /// allows that, and leaves the keyboard focus where it is. False when this native window can't
    /// be brought to the front, for example because the user has minimised it: make and show
    /// another one.
    virtual bool bringToFront(QWindow &window) = 0;

    /// Gives the window the keyboard focus. Call it when the user clicks into a name; no other
    /// click takes the focus.
    virtual void takeFocus(QWindow &window) = 0;

    /// Returns the keyboard focus to where it was before the window took it. Call it before hiding
    /// the window; without the focus it does nothing.
    virtual void giveFocusBack(QWindow &window) = 0;

    /// The same, while the window stays visible. Does nothing where a program can't do that.
    virtual void giveFocusBackAndStay(QWindow &) {}

    /// Whether transparent parts of a window show what is behind it. Otherwise they are black.
    /// Checked on each call.
    virtual bool showsTransparency() const = 0;

Q_SIGNALS:
    /// The desktop has removed the shown window, for example with its screen: make and show another
    /// one.
    void removed();

    /// `showsTransparency()` may have changed.
    void transparencyChanged();

    /// `visibleFrame()` may have changed although the screen's available geometry has not, or the
    /// window manager may have moved the window out of the way of a desktop bar.
    void visibleFrameChanged();
};

std::unique_ptr<PanelWindow> makePanelWindow();
