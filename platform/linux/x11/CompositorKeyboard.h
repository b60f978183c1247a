// SPDX-License-Identifier: MIT
#pragma once

#include "platform/linux/x11/TransparentWindow.h"
#include "platform/linux/x11/X11Properties.h"

#include <QObject>
#include <QPointer>
#include <QTimer>

#include <memory>

class QWindow;
class X11Connection;

/// The keyboard of a Wayland compositor, for an X11 window that the compositor does not manage and
/// therefore never gives it to. It gives it to an invisible window that it manages, as that one
/// appears. While that one has it, all keys go to our window; it loses it when the user turns to
/// another program. Main thread; the connection must outlive it.
///
/// Under a full-screen window the compositor gives it only to an unmanaged invisible window, and
/// does not take it back when the user clicks elsewhere. Then it goes back when the mouse leaves
/// our window.
class CompositorKeyboard : public QObject
{
public:
    explicit CompositorKeyboard(X11Connection &x11);

    bool isWith(const QWindow &window) const;

    void take(QWindow &window);

    /// To the window that had it before, unless it has gone elsewhere meanwhile.
    void giveBack();

private:
    using Manager = TransparentWindow::Manager;

    void appear(Manager manager);
    void describe(xcb_window_t invisible);
    void takeUnmanaged();
    void readEvent(const xcb_generic_event_t *event);
    void readFocus(const xcb_focus_in_event_t &event, bool hasIt);

    X11Connection &m_x11;
    X11Properties m_properties;
    QPointer<QWindow> m_window;
    std::unique_ptr<TransparentWindow> m_invisible;
    /// Runs while the managed one has not got the keyboard.
    QTimer m_patience;
};
