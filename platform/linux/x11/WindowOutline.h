// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/ShadowWindow.h"

#include <QObject>
#include <QPointer>

class CompositorWatch;
class QWindow;
class X11Connection;

/// The outline of a window with rounded corners. Under a compositor the window draws its corners
/// itself and gets a soft shadow; otherwise they are cut off, as finely as the screen's pixels
/// allow. Follows the window as the server reports it, and the compositor. Main thread; the
/// connection and the watch must outlive it.
class WindowOutline : public QObject
{
    Q_OBJECT
public:
    /// @param radius of the corners, in points
    WindowOutline(QWindow &window, double radius, X11Connection &x11, CompositorWatch &compositor);

    /// Brings everything up to date now.
    void update();

private:
    struct Geometry;

    void readEvent(const xcb_generic_event_t *event);
    void updateSoon();
    void followFrame();
    void cutCorners(QSize size);

    QPointer<QWindow> m_window;
    const xcb_window_t m_id;
    const double m_radius;
    X11Connection &m_x11;
    CompositorWatch &m_compositor;
    ShadowWindow m_shadow;
    /// The window itself, or the window manager's frame around it.
    xcb_window_t m_frame;
    /// The window's size when its corners were last cut; empty while they are not.
    QSize m_cutSize;
    double m_cutRadius = 0;
    bool m_isOutdated = false;
};
