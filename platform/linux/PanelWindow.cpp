// SPDX-License-Identifier: MIT
#include "platform/PanelWindow.h"

#include "platform/linux/wayland/LayerPanelWindow.h"
#include "platform/linux/wayland/LayerShell.h"
#include "platform/linux/x11/X11PanelWindow.h"
#include "platform/linux/x11/qtConnection.h"

#include <QGuiApplication>
#include <QWindow>

namespace
{

/// For desktops where an ordinary program can't ask for more than Qt already does.
class PlainPanelWindow : public PanelWindow
{
public:
    Qt::WindowType windowType() const override { return Qt::Window; }
    QScreen *screen() const override { return QGuiApplication::primaryScreen(); }
    void prepare(QWindow &window, double) override
    {
        fixSize(window);
        connect(&window, &QWindow::heightChanged, this, [&window] { fixSize(window); });
    }
    bool bringToFront(QWindow &window) override
    {
        window.raise();
        return true;
    }
    void takeFocus(QWindow &window) override { window.requestActivate(); }
    void giveFocusBack(QWindow &) override {}
    bool showsTransparency() const override { return true; }

private:
    /// Compositors that tile windows let one of fixed size float.
    static void fixSize(QWindow &window)
    {
        window.setMinimumSize(window.size());
        window.setMaximumSize(window.size());
    }
};

} // namespace

std::unique_ptr<PanelWindow> makePanelWindow()
{
    if (xcb_connection_t *const connection = qtConnection())
        return std::make_unique<X11PanelWindow>(connection);
    if (auto shell = LayerShell::find())
        return std::make_unique<LayerPanelWindow>(std::move(shell));
    return std::make_unique<PlainPanelWindow>();
}
