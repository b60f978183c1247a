// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <xcb/xcb.h>

class X11Connection;

/// Knows whether a compositor runs, that is, whether transparent parts of a window show what is
/// behind it. A compositor announces itself before it draws any window. The server tells when it
/// really draws: then a window has a picture of its own, apart from the screen's. Main thread; the
/// connection must outlive it.
class CompositorWatch : public QObject
{
    Q_OBJECT
public:
    explicit CompositorWatch(X11Connection &x11);
    ~CompositorWatch() override;

    /// Asks the server.
    bool isRunning() const;

Q_SIGNALS:
    /// A compositor may have started or ended.
    void changed();

private:
    bool hasCompositors();
    void createProbe();
    void watchSelection();
    bool isOwned() const;
    bool isProbeRedirected() const;
    void readEvent(const xcb_generic_event_t *event);

    X11Connection &m_x11;
    /// A compositor owns this selection of its screen.
    xcb_atom_t m_selection = XCB_ATOM_NONE;
    /// The event that reports a new owner; absent when the server does not report it.
    int m_ownerEvent = -1;
    /// A window of one pixel outside the screen, which a compositor draws like all others. None
    /// when the server does not support compositors.
    xcb_window_t m_probe = XCB_WINDOW_NONE;
};
