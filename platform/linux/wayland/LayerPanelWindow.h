// SPDX-License-Identifier: MIT
#pragma once

#include "platform/PanelWindow.h"
#include "platform/linux/wayland/CornerPlace.h"

#include <QPointer>
#include <QTimer>

class LayerShell;
class LayerSurface;
class PanelPopUps;
class PanelShadow;

/// A panel on a Wayland compositor that places panels: on the screen that the program names, clear
/// of bars.
///
/// Compositors of layer-shell 4 give a panel the keyboard by a click only if it has asked for that
/// before, and then for a click on a button, too. So it asks only when a name is clicked.
class LayerPanelWindow : public PanelWindow
{
    Q_OBJECT
public:
    explicit LayerPanelWindow(std::unique_ptr<LayerShell> shell);
    ~LayerPanelWindow() override;

    Qt::WindowType windowType() const override { return Qt::Window; }
    QScreen *screen() const override;
    void setFrame(const QRect &frame) override;
    QRect frame(const QWindow &window) const override;
    void prepare(QWindow &window, double cornerRadius) override;
    bool bringToFront(QWindow &window) override;
    void takeFocus(QWindow &window) override;
    void giveFocusBack(QWindow &) override { releaseKeyboard(); }
    void giveFocusBackAndStay(QWindow &) override { releaseKeyboard(); }
    bool showsTransparency() const override { return true; }

    bool eventFilter(QObject *receiver, QEvent *event) override;

private:
    void focusChanged(const QWindow *focused);
    void releaseKeyboard();
    void closed();
    void offerAnother();
    void drawShadow();
    bool hasMenu() const;
    bool isInUse() const;
    bool isAsMade(const QWindow &window) const;
    static bool hasScaleOfScreen(const QWindow &window);
    void end();

    std::unique_ptr<LayerShell> m_shell;
    CornerPlace m_place;
    /// The one that the place is on.
    QPointer<QScreen> m_screen;
    QWindow *m_window = nullptr;
    std::unique_ptr<LayerSurface> m_surface;
    /// The one that the surface was made for.
    QPointer<QScreen> m_screenOfSurface;
    std::unique_ptr<PanelShadow> m_shadow;
    std::unique_ptr<PanelPopUps> m_popUps;
    QTimer m_patience;
    bool m_isNew = false;
    bool m_hasMouse = false;
    /// Whether the compositor tells which screen the user works on.
    mutable bool m_isToldScreen = true;
};
