// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/applications/FocusSource.h"
#include "platform/linux/x11/X11Connection.h"
#include "platform/linux/x11/X11Replies.h"

#include <QTimer>

/// The window that an X server's window manager calls active, or the one that it is a dialog of.
/// Windows are queried without waiting for the answers, over a connection of its own: a window that
/// dies meanwhile is no error, and however often other programs change the active window, it is
/// examined some tens of times a second at most.
class X11FocusSource : public FocusSource
{
public:
    /// @param seesAllWindows false for the X server of a Wayland desktop
    explicit X11FocusSource(bool seesAllWindows);

    bool seesAllWindows() const override { return m_seesAllWindows; }
    void update() override;

private:
    enum AtomName { ActiveWindow, WindowType, Dock, Desktop, Notification, GtkId, KdeDesktopFile };

    void readEvent(const xcb_generic_event_t *event);
    void lookWhenOutdated();
    void look();
    void advance();
    void readAnswers();
    void ask(quint32 window);
    void finish();
    std::optional<FocusedWindow> describedWindow() const;

    const bool m_seesAllWindows;
    X11Connection m_connection;
    /// By their names above.
    QList<quint32> m_atoms;
    bool m_knowsProcesses = false;

    /// The current look: the replies still expected, and the windows queried, each the leader of
    /// the one before.
    std::optional<X11Replies> m_replies;
    QList<quint32> m_asked;
    std::optional<FocusedWindow> m_found;

    bool m_isOutdated = false;
    QTimer m_pause;
};
