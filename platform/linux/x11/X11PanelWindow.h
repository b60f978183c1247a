// SPDX-License-Identifier: MIT
#pragma once

#include "platform/PanelWindow.h"
#include "platform/linux/x11/BorrowedKeyboard.h"
#include "platform/linux/x11/CompositorKeyboard.h"
#include "platform/linux/x11/CompositorWatch.h"
#include "platform/linux/x11/DesktopBars.h"
#include "platform/linux/x11/X11Connection.h"
#include "platform/linux/x11/X11Properties.h"
#include "platform/linux/x11/X11WindowManager.h"

#include <QPointer>
#include <QRect>
#include <QWindow>

class WindowOutline;

/// A panel on an X server, made by window properties. Usually the window manager manages it; where
/// the manager would hide it, it is shown unmanaged.
///
/// Window managers learn late that a window was hidden. If it is shown again before that, they hide
/// it once more, take its properties away or keep it in its old frame. So no native window is shown
/// twice.
class X11PanelWindow : public PanelWindow
{
    Q_OBJECT
public:
    /// @param connection the program's own, on which it shows its windows
    explicit X11PanelWindow(xcb_connection_t *connection);
    ~X11PanelWindow() override;

    Qt::WindowType windowType() const override;
    QScreen *screen() const override;
    QRect visibleFrame(const QScreen &screen) const override;
    void setFrame(const QRect &frame) override;
    void prepare(QWindow &window, double cornerRadius) override;
    bool bringToFront(QWindow &window) override;
    void takeFocus(QWindow &window) override;
    void giveFocusBack(QWindow &window) override;
    void giveFocusBackAndStay(QWindow &window) override;
    bool showsTransparency() const override;

private:
    bool isBestUnmanaged(const QWindow &window);
    bool isPushedByBars() const;
    void moveAside();
    static QRect devicePixels(const QScreen &screen);
    static QRect screenOf(const QWindow &window);
    void makeGroupOfItsOwn(xcb_window_t window);

    xcb_connection_t *m_connection;
    X11Connection m_own;
    CompositorWatch m_compositor;
    X11Properties m_properties;
    X11WindowManager m_manager;
    DesktopBars m_bars;
    BorrowedKeyboard m_keyboard;
    CompositorKeyboard m_compositorKeyboard;
    QPointer<QWindow> m_window;
    /// Where it is to be. A window manager may have moved it.
    QRect m_place;
    std::unique_ptr<WindowOutline> m_outline;
    /// Shown without the window manager, above everything.
    bool m_isUnmanaged = false;
    bool m_isNew = false;
};
