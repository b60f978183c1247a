// SPDX-License-Identifier: MIT
#pragma once

#include "platform/PanelWindow.h"
#include "platform/linux/wayland/CornerPlace.h"

#include <QTimer>

class LayerShell;
class LayerSurface;
class PanelPopUps;

/// A panel on a Wayland compositor that places panels. The compositor puts it on the screen that
/// the user works on, clear of bars.
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
    void end();

    std::unique_ptr<LayerShell> m_shell;
    CornerPlace m_place;
    QWindow *m_window = nullptr;
    std::unique_ptr<LayerSurface> m_surface;
    std::unique_ptr<PanelPopUps> m_popUps;
    QTimer m_patience;
    bool m_isNew = false;
};
