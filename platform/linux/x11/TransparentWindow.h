// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <xcb/xcb.h>

class X11Connection;

/// A window of one transparent pixel at the screen's corner, not shown yet, which clicks go
/// through. It goes with this object. Main thread; the connection must outlive it.
class TransparentWindow
{
public:
    enum class Manager { Manages, Ignores };

    TransparentWindow(X11Connection &x11, Manager manager);
    ~TransparentWindow();
    Q_DISABLE_COPY_MOVE(TransparentWindow)

    /// None when the server has no transparent windows.
    xcb_window_t id() const { return m_id; }

    static constexpr uint8_t depth = 32;

private:
    X11Connection &m_x11;
    xcb_colormap_t m_colormap = XCB_NONE;
    xcb_window_t m_id = XCB_WINDOW_NONE;
};
