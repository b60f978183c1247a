// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <xcb/xcb.h>

class X11Connection;

/// Knows whether a compositor runs, that is whether what is transparent in a window lets those
/// behind it through. A compositor says that it is there before it draws any window; the server
/// tells when it really does, for then a window has a picture of its own, apart from the screen's.
/// Main thread; the connection outlives it.
class CompositorWatch : public QObject
{
    Q_OBJECT
public:
    explicit CompositorWatch(X11Connection &x11);
    ~CompositorWatch() override;

    /// Asks the server.
    bool isRunning() const;

Q_SIGNALS:
    /// A compositor may have come or gone.
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
    /// The event that tells of a new owner; absent where the server can't tell.
    int m_ownerEvent = -1;
    /// A window of one pixel outside the screen, which a compositor draws like all others. None
    /// where the server knows no compositors.
    xcb_window_t m_probe = XCB_WINDOW_NONE;
};
