// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11PanelWindow.h"

#include "platform/linux/x11/WindowOutline.h"

#include <QCursor>
#include <QGuiApplication>
#include <QScreen>
#include <QWindow>

#include <algorithm>
#include <cmath>
#include <utility>

namespace
{

constexpr quint32 allDesktops = 0xFFFFFFFF;

xcb_window_t idOf(const QWindow &window)
{
    return static_cast<xcb_window_t>(window.winId());
}

bool isOfThisProgram(xcb_window_t window)
{
    const QWindowList windows = QGuiApplication::topLevelWindows();
    return std::any_of(windows.begin(), windows.end(), [window](const QWindow *own) {
        return own->handle() && own->winId() == window;
    });
}

} // namespace

X11PanelWindow::X11PanelWindow(xcb_connection_t *connection)
    : m_connection(connection)
    , m_own(XCB_EVENT_MASK_PROPERTY_CHANGE)
    , m_compositor(m_own)
    , m_properties(connection, m_own.root())
    , m_manager(m_own)
    , m_bars(m_own)
    , m_keyboard(m_own, m_manager)
    , m_compositorKeyboard(m_own)
{
    connect(&m_compositor, &CompositorWatch::changed, this, &PanelWindow::transparencyChanged);
    connect(&m_bars, &DesktopBars::changed, this, &X11PanelWindow::moveAside);
}

X11PanelWindow::~X11PanelWindow() = default;

/// Qt makes a tool window a dialog of the program's group, and KWin hides those with the program's
/// other windows when the user switches to another application.
Qt::WindowType X11PanelWindow::windowType() const
{
    return Qt::Window;
}

/// The window manager would push the window off the place that it is to move to now.
void X11PanelWindow::moveAside()
{
    Q_EMIT visibleFrameChanged();
    if (m_window && m_window->isVisible() && !m_isUnmanaged && isPushedByBars())
        Q_EMIT removed();
}

QScreen *X11PanelWindow::screen() const
{
    QScreen *underPointer = QGuiApplication::screenAt(QCursor::pos());
    return underPointer ? underPointer : QGuiApplication::primaryScreen();
}

QRect X11PanelWindow::visibleFrame(const QScreen &screen) const
{
    if (!m_own.isAlive() || (QGuiApplication::screens().size() < 2 && m_bars.areInWorkArea()))
        return screen.availableGeometry();
    const QRect whole = devicePixels(screen);
    const auto free = m_bars.freePart(whole);
    if (!free)
        return screen.availableGeometry();
    const auto points = [ratio = screen.devicePixelRatio()](int pixels) {
        return static_cast<int>(std::ceil(pixels / ratio));
    };
    return screen.geometry().marginsRemoved(
        {points(free->left() - whole.left()), points(free->top() - whole.top()),
         points(whole.right() - free->right()), points(whole.bottom() - free->bottom())});
}

void X11PanelWindow::setFrame(const QRect &frame)
{
    m_place = frame;
}

void X11PanelWindow::prepare(QWindow &window, double cornerRadius)
{
    const xcb_window_t id = idOf(window);
    m_window = &window;
    m_isNew = true;
    m_compositorKeyboard.giveBack();
    m_isUnmanaged = isBestUnmanaged(window);
    // Otherwise Qt asks for the keyboard focus at each click into a window that does not have it.
    window.setFlag(Qt::WindowDoesNotAcceptFocus);
    window.setFlag(Qt::BypassWindowManagerHint, m_isUnmanaged);
    makeGroupOfItsOwn(id);
    m_properties.set(
        id, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM,
        m_properties.atoms({"_NET_WM_WINDOW_TYPE_UTILITY", "_NET_WM_WINDOW_TYPE_NORMAL"}));
    m_properties.set(id, "_NET_WM_STATE", XCB_ATOM_ATOM,
                     m_properties.atoms({"_NET_WM_STATE_STICKY", "_NET_WM_STATE_SKIP_TASKBAR",
                                         "_NET_WM_STATE_SKIP_PAGER", "_NET_WM_STATE_ABOVE"}));
    m_properties.set(id, "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL, {allDesktops});
    // The panel draws its own shadow.
    m_properties.set(id, "_COMPTON_SHADOW", XCB_ATOM_CARDINAL, {0});
    xcb_flush(m_connection);
    m_outline = std::make_unique<WindowOutline>(window, cornerRadius, m_own, m_compositor);
}

bool X11PanelWindow::bringToFront(QWindow &window)
{
    // Window managers put a newly shown window in front.
    if (std::exchange(m_isNew, false))
        return true;
    const xcb_window_t id = idOf(window);
    // While the user is typing they see it, and a new window would not have the keyboard.
    const bool isInUse = m_keyboard.isWith(id) || m_compositorKeyboard.isWith(window);
    if (!isInUse && m_isUnmanaged != isBestUnmanaged(window))
        return false;
    if (!m_isUnmanaged)
        return (m_manager.putOnTop(id) && !m_manager.hasPutAway(id)) || isInUse;
    const quint32 above = XCB_STACK_MODE_ABOVE;
    xcb_configure_window(m_connection, id, XCB_CONFIG_WINDOW_STACK_MODE, &above);
    xcb_flush(m_connection);
    return true;
}

void X11PanelWindow::takeFocus(QWindow &window)
{
    if (m_isUnmanaged && m_manager.isOfWlroots())
        m_compositorKeyboard.take(window);
    else
        m_keyboard.take(idOf(window));
}

/// When a window that they manage goes, window managers give the keyboard to the next one
/// themselves; KWin does so only if nobody else has.
/// But they may choose a window of ours that waits for its dialog.
void X11PanelWindow::giveFocusBack(QWindow &window)
{
    if (m_isUnmanaged || m_compositorKeyboard.isWith(window) ||
        isOfThisProgram(m_keyboard.lender()))
        giveFocusBackAndStay(window);
}

void X11PanelWindow::giveFocusBackAndStay(QWindow &window)
{
    if (m_compositorKeyboard.isWith(window))
        m_compositorKeyboard.giveBack();
    else
        m_keyboard.giveBack(idOf(window));
}

bool X11PanelWindow::showsTransparency() const
{
    return m_compositor.isRunning();
}

/// Where the manager would hide the window, place it where it likes or give it the keyboard.
bool X11PanelWindow::isBestUnmanaged(const QWindow &window)
{
    return m_manager.isOfWlroots() || !m_manager.knowsPanels() || m_manager.isShowingDesktop() ||
           m_manager.hidesUnderFullScreen(idOf(window), screenOf(window)) || isPushedByBars();
}

/// With one screen, there is nothing on the far side of a bar.
bool X11PanelWindow::isPushedByBars() const
{
    const QScreen *const screen = QGuiApplication::screenAt(m_place.center());
    if (!screen || QGuiApplication::screens().size() < 2)
        return false;
    const QPoint corner = screen->geometry().topLeft();
    const double ratio = screen->devicePixelRatio();
    return m_bars.reserve({corner + (m_place.topLeft() - corner) * ratio, m_place.size() * ratio});
}

/// Qt does not scale the position of a screen's corner.
QRect X11PanelWindow::devicePixels(const QScreen &screen)
{
    return {screen.geometry().topLeft(), screen.size() * screen.devicePixelRatio()};
}

/// The screen that the window is on, or will be on when it is shown, in device pixels.
QRect X11PanelWindow::screenOf(const QWindow &window)
{
    const QScreen *found = QGuiApplication::screenAt(window.geometry().center());
    return devicePixels(found ? *found : *window.screen());
}

/// Desktops hide, raise and minimise a group's windows together.
void X11PanelWindow::makeGroupOfItsOwn(xcb_window_t window)
{
    constexpr qsizetype flags = 0;
    constexpr qsizetype group = 8;
    constexpr quint32 groupHint = 64;
    QList<quint32> hints = m_properties.numbers(window, "WM_HINTS");
    hints.resize(group + 1);
    hints[flags] |= groupHint;
    hints[group] = window;
    m_properties.set(window, "WM_HINTS", XCB_ATOM_WM_HINTS, hints);
}
