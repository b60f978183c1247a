// SPDX-License-Identifier: MIT
#include "platform/linux/wayland/LayerPanelWindow.h"

#include "platform/linux/wayland/LayerShell.h"
#include "platform/linux/wayland/LayerSurface.h"
#include "platform/linux/wayland/PanelPopUps.h"
#include "platform/linux/wayland/PanelShadow.h"
#include "platform/linux/wayland/activeScreen.h"
#include "platform/linux/wayland/qtWayland.h"

#include <QGuiApplication>
#include <QPlatformSurfaceEvent>
#include <QThread>
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

QScreen *LayerPanelWindow::screen() const
{
    if (m_isToldScreen && QGuiApplication::screens().size() > 1) {
        if (QScreen *const active = activeScreen(*m_shell))
            return active;
        // Waiting in vain for each screenshot would be noticed.
        m_isToldScreen = false;
    }
    return m_screenOfSurface ? m_screenOfSurface.data() : QGuiApplication::primaryScreen();
}

void LayerPanelWindow::setFrame(const QRect &frame)
{
    QScreen *const found = QGuiApplication::screenAt(frame.center());
    m_screen = found ? found : QGuiApplication::primaryScreen();
    if (m_screen)
        m_place = CornerPlace::of(frame, m_screen->geometry());
    if (!m_surface)
        return;
    drawShadow();
    m_surface->setPlace(m_place);
    if (!hasScaleOfScreen(*m_window) && !isInUse())
        QMetaObject::invokeMethod(this, &PanelWindow::removed, Qt::QueuedConnection);
}

/// Qt moves all windows to the corner of their screen. Bars are not taken into account: nobody says
/// where they are.
QRect LayerPanelWindow::frame(const QWindow &window) const
{
    return m_place.on(window.screen()->geometry());
}

void LayerPanelWindow::prepare(QWindow &window, double cornerRadius)
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
    m_screenOfSurface = m_screen;
    wl_surface *const surface = qtWayland::surface(window);
    m_surface = std::make_unique<LayerSurface>(*m_shell, surface,
                                               m_screen ? qtWayland::output(*m_screen) : nullptr);
    m_surface->setPlace(m_place);
    if (!m_surface->appear())
        return m_surface.reset();
    connect(m_surface.get(), &LayerSurface::closed, this, &LayerPanelWindow::closed,
            Qt::QueuedConnection);
    m_shadow = std::make_unique<PanelShadow>(*m_shell, surface, cornerRadius);
    drawShadow();
    m_popUps = std::make_unique<PanelPopUps>(*m_shell, *m_surface, window);
    connect(m_popUps.get(), &PanelPopUps::dismissed, this, &LayerPanelWindow::releaseKeyboard);
}

/// Panels are always in front. What is in use stays as it is.
bool LayerPanelWindow::bringToFront(QWindow &window)
{
    if (std::exchange(m_isNew, false))
        return true;
    return m_surface && (isInUse() || isAsMade(window));
}

/// Can be asked while the panel goes, which closes its menus.
bool LayerPanelWindow::hasMenu() const
{
    return m_popUps && m_popUps->hasMenu();
}

/// While the user drags from it, the program runs a loop of events for that.
bool LayerPanelWindow::isInUse() const
{
    const bool isPressed = m_hasMouse && QGuiApplication::mouseButtons() != Qt::NoButton;
    return isPressed || hasMenu() || QThread::currentThread()->loopLevel() > 1 ||
           QGuiApplication::focusWindow() == m_window;
}

/// A panel can't move to another screen.
bool LayerPanelWindow::isAsMade(const QWindow &window) const
{
    const QScreen *const madeFor = m_screenOfSurface ? m_screenOfSurface.data() : window.screen();
    return m_screen == madeFor && hasScaleOfScreen(window);
}

/// Qt goes on drawing a window in the scale that its screen had when the window came there.
bool LayerPanelWindow::hasScaleOfScreen(const QWindow &window)
{
    return window.devicePixelRatio() == window.screen()->devicePixelRatio();
}

void LayerPanelWindow::drawShadow()
{
    if (m_shadow)
        m_shadow->draw(m_place.size, int(m_window->devicePixelRatio()));
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
    } else if (event->type() == QEvent::Enter) {
        m_hasMouse = true;
    } else if (event->type() == QEvent::Leave) {
        m_hasMouse = false;
        if (!hasMenu() && keepsKeyboardAfterClickElsewhere())
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
    } else if (!focused || !hasMenu()) {
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
    m_shadow.reset();
    m_surface.reset();
    offerAnother();
}

/// If there is no screen now, one will be added.
void LayerPanelWindow::offerAnother()
{
    m_isToldScreen = true;
    if (m_window && m_window->isVisible() && !m_surface)
        Q_EMIT removed();
}

/// The surface must outlive its role, and Qt destroys it when the window is hidden.
void LayerPanelWindow::end()
{
    m_patience.stop();
    m_hasMouse = false;
    m_popUps.reset();
    m_shadow.reset();
    m_surface.reset();
    if (QWindow *const window = std::exchange(m_window, nullptr)) {
        window->removeEventFilter(this);
        disconnect(window, nullptr, this, nullptr);
    }
}
