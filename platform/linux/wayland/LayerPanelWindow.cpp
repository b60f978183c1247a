// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/LayerPanelWindow.h"

#include "platform/linux/wayland/LayerShell.h"
#include "platform/linux/wayland/LayerSurface.h"
#include "platform/linux/wayland/PanelPopUps.h"
#include "platform/linux/wayland/qtWayland.h"

#include <QGuiApplication>
#include <QPlatformSurfaceEvent>
#include <QWindow>

#include <chrono>
#include <utility>

using namespace std::chrono_literals;
using Keyboard = LayerSurface::Keyboard;

namespace
{

/// Without a keyboard at hand, the wish for it must not last until one comes.
constexpr auto longestWaitForKeyboard = 1s;

/// sway 1.7 leaves the keyboard with a panel when the user clicks into another window.
bool keepsKeyboardAfterClickElsewhere()
{
    return qEnvironmentVariableIsSet("SWAYSOCK");
}

} // namespace

LayerPanelWindow::LayerPanelWindow(std::unique_ptr<LayerShell> shell) : m_shell(std::move(shell))
{
    m_patience.setSingleShot(true);
    m_patience.setInterval(longestWaitForKeyboard);
    m_patience.callOnTimeout(this, &LayerPanelWindow::releaseKeyboard);
    connect(qGuiApp, &QGuiApplication::focusWindowChanged, this, &LayerPanelWindow::focusChanged);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, &LayerPanelWindow::offerAnother,
            Qt::QueuedConnection);
}

LayerPanelWindow::~LayerPanelWindow()
{
    end();
}

/// The compositor chooses; this one is as good as any other for the distances from the edges.
QScreen *LayerPanelWindow::screen() const
{
    return QGuiApplication::primaryScreen();
}

void LayerPanelWindow::setFrame(const QRect &frame)
{
    if (const QScreen *const measured = screen())
        m_place = CornerPlace::of(frame, measured->geometry());
    if (m_surface)
        m_surface->setPlace(m_place);
}

/// Qt moves all windows to the corner of their screen. Bars are not taken into account: nobody says
/// where they are.
QRect LayerPanelWindow::frame(const QWindow &window) const
{
    return m_place.on(window.screen()->geometry());
}

void LayerPanelWindow::prepare(QWindow &window, double)
{
    end();
    m_window = &window;
    m_isNew = true;
    // Qt leaves the surface of such a window to the program.
    window.setFlag(Qt::BypassWindowManagerHint);
    window.installEventFilter(this);
    connect(&window, &QWindow::visibleChanged, this, [this](bool isVisible) {
        if (!isVisible)
            end();
    });
    m_surface = std::make_unique<LayerSurface>(*m_shell, qtWayland::surface(window));
    connect(m_surface.get(), &LayerSurface::closed, this, &LayerPanelWindow::closed,
            Qt::QueuedConnection);
    m_surface->setPlace(m_place);
    if (!m_surface->appear())
        return m_surface.reset();
    m_popUps = std::make_unique<PanelPopUps>(*m_shell, *m_surface, window);
    connect(m_popUps.get(), &PanelPopUps::dismissed, this, &LayerPanelWindow::releaseKeyboard);
}

/// Panels are always in front.
bool LayerPanelWindow::bringToFront(QWindow &)
{
    return std::exchange(m_isNew, false) || m_surface;
}

void LayerPanelWindow::takeFocus(QWindow &window)
{
    if (!m_surface || QGuiApplication::focusWindow() == &window)
        return;
    m_surface->setKeyboard(Keyboard::Now);
    m_patience.start();
}

bool LayerPanelWindow::eventFilter(QObject *, QEvent *event)
{
    if (event->type() == QEvent::PlatformSurface) {
        const auto &change = static_cast<const QPlatformSurfaceEvent &>(*event);
        if (change.surfaceEventType() == QPlatformSurfaceEvent::SurfaceAboutToBeDestroyed)
            end();
    } else if (event->type() == QEvent::Leave && m_popUps && !m_popUps->hasMenu() &&
               keepsKeyboardAfterClickElsewhere()) {
        releaseKeyboard();
    }
    return false;
}

void LayerPanelWindow::focusChanged(const QWindow *focused)
{
    if (!m_surface)
        return;
    if (focused && focused == m_window) {
        m_patience.stop();
        if (m_shell->movesKeyboardByClick())
            m_surface->setKeyboard(Keyboard::ByClick);
    } else if (!focused || !m_popUps->hasMenu()) {
        releaseKeyboard();
    }
}

void LayerPanelWindow::releaseKeyboard()
{
    m_patience.stop();
    if (m_surface)
        m_surface->setKeyboard(Keyboard::Never);
}

void LayerPanelWindow::closed()
{
    m_popUps.reset();
    m_surface.reset();
    offerAnother();
}

/// If there is no screen now, one will be added.
void LayerPanelWindow::offerAnother()
{
    if (m_window && m_window->isVisible() && !m_surface)
        Q_EMIT removed();
}

/// The surface must outlive its role, and Qt destroys it when the window is hidden.
void LayerPanelWindow::end()
{
    m_patience.stop();
    m_popUps.reset();
    m_surface.reset();
    if (QWindow *const window = std::exchange(m_window, nullptr)) {
        window->removeEventFilter(this);
        disconnect(window, nullptr, this, nullptr);
    }
}
