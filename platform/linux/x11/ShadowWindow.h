// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

#include <memory>
#include <xcb/xcb.h>

class TransparentWindow;
class X11Connection;

/// A window that shows nothing but another window's soft shadow, for desktops with a compositor. It
/// lies directly below that window, no window manager manages it, and clicks go through it. Where
/// the server has no transparent windows it is never seen. Main thread.
class ShadowWindow
{
public:
    explicit ShadowWindow(X11Connection &x11);
    ~ShadowWindow();
    Q_DISABLE_COPY_MOVE(ShadowWindow)

    struct Caster {
        /// The top-level window on the server: the window manager's frame around it.
        xcb_window_t window = XCB_WINDOW_NONE;
        /// In device pixels of the desktop.
        QRect place;
        /// Of the corners, in points.
        double radius = 0;
        /// Device pixels per point.
        double scale = 1;
    };

    /// Shows the shadow, and follows the window's position and its place in the stack.
    void showBelow(const Caster &caster);
    void hide();

private:
    void draw(const Caster &caster);

    X11Connection &m_x11;
    std::unique_ptr<TransparentWindow> m_window;
    bool m_isMapped = false;
    /// What the window shows now.
    QSize m_drawnSize;
    double m_drawnScale = 0;
};
