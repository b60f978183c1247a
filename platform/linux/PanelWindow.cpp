// SPDX-License-Identifier: MIT
#include "platform/PanelWindow.h"

#include "platform/linux/x11/CompositorWatch.h"
#include "platform/linux/x11/WindowOutline.h"
#include "platform/linux/x11/X11Connection.h"
#include "platform/linux/x11/X11Properties.h"

#include <QCursor>
#include <QGuiApplication>
#include <QList>
#include <QScreen>
#include <QWindow>

#include <utility>

namespace
{

constexpr quint32 allDesktops = 0xFFFFFFFF;

/// In the messages that change a window's state, and who sends them: the user, as a pager does.
enum StateChange : quint32 { Remove = 0, Add = 1 };
constexpr quint32 fromUser = 2;

xcb_window_t idOf(const QWindow &window)
{
    return static_cast<xcb_window_t>(window.winId());
}

/// A window on an X server, by its properties. Window managers read most of them when the window
/// is mapped, and take some away when it is unmapped.
class X11PanelWindow : public PanelWindow
{
public:
    explicit X11PanelWindow(xcb_connection_t *connection)
        : m_connection(connection)
        , m_own(XCB_EVENT_MASK_NO_EVENT)
        , m_compositor(m_own)
        , m_properties(connection, m_own.root())
    {
        connect(&m_compositor, &CompositorWatch::changed, this, &PanelWindow::transparencyChanged);
    }

    /// Qt makes a tool window a dialogue of the program's group, and KWin hides those with the
    /// program's other windows when the user turns to another application.
    Qt::WindowType windowType() const override { return Qt::Window; }

    QScreen *screen() const override
    {
        QScreen *underPointer = QGuiApplication::screenAt(QCursor::pos());
        return underPointer ? underPointer : QGuiApplication::primaryScreen();
    }

    void setOutline(QWindow &window, double cornerRadius) override
    {
        m_outline = std::make_unique<WindowOutline>(window, cornerRadius, m_own, m_compositor);
    }

    void prepare(QWindow &window) override
    {
        const xcb_window_t id = idOf(window);
        m_isUnmanaged = isHiddenByManager(window);
        // Otherwise Qt asks for the keyboard at each click into a window that has not got it.
        window.setFlag(Qt::WindowDoesNotAcceptFocus);
        window.setFlag(Qt::BypassWindowManagerHint, m_isUnmanaged);
        if (m_isUnmanaged)
            leaveFrame(window);
        makeGroupOfItsOwn(id);
        m_properties.set(
            id, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM,
            m_properties.atoms({"_NET_WM_WINDOW_TYPE_UTILITY", "_NET_WM_WINDOW_TYPE_NORMAL"}));
        m_properties.set(id, "_NET_WM_STATE", XCB_ATOM_ATOM,
                         m_properties.atoms({"_NET_WM_STATE_STICKY", "_NET_WM_STATE_SKIP_TASKBAR",
                                             "_NET_WM_STATE_SKIP_PAGER", "_NET_WM_STATE_ABOVE"}));
        m_properties.set(id, "_NET_WM_DESKTOP", XCB_ATOM_CARDINAL, {allDesktops});
        // The panel has a shadow of its own.
        m_properties.set(id, "_COMPTON_SHADOW", XCB_ATOM_CARDINAL, {0});
        if (m_outline)
            m_outline->update();
        m_isNew = true;
        xcb_flush(m_connection);
    }

    bool bringToFront(QWindow &window) override
    {
        // Window managers put a window that has just been shown in front.
        if (std::exchange(m_isNew, false))
            return true;
        const xcb_window_t id = idOf(window);
        if (!hasKeyboard(id) && (isPutAway(id) || m_isUnmanaged != isHiddenByManager(window)))
            return false;
        if (m_isUnmanaged) {
            const quint32 above = XCB_STACK_MODE_ABOVE;
            xcb_configure_window(m_connection, id, XCB_CONFIG_WINDOW_STACK_MODE, &above);
        } else {
            restack(id);
        }
        xcb_flush(m_connection);
        return true;
    }

    /// The window asks no manager for the keyboard, it takes it, as X11 allows a program whose
    /// window the user has just clicked into. So nothing but this gives it the keyboard.
    void takeFocus(QWindow &window) override
    {
        xcb_set_input_focus(m_connection, XCB_INPUT_FOCUS_PARENT, idOf(window), XCB_CURRENT_TIME);
        xcb_flush(m_connection);
    }

    bool showsTransparency() const override { return m_compositor.isRunning(); }

private:
    /// Some window managers give the keyboard to a window that raises itself; they leave it where
    /// it is when a pager restacks the window. Those that know no such message put a window on top
    /// when it becomes one of those that stay above.
    void restack(xcb_window_t id)
    {
        const xcb_atom_t message = m_properties.atom("_NET_RESTACK_WINDOW");
        if (m_properties.numbers(m_properties.root(), "_NET_SUPPORTED").contains(message)) {
            m_properties.request(id, "_NET_RESTACK_WINDOW",
                                 {fromUser, XCB_WINDOW_NONE, XCB_STACK_MODE_ABOVE});
            return;
        }
        const xcb_atom_t above = m_properties.atom("_NET_WM_STATE_ABOVE");
        for (const StateChange change : {Remove, Add})
            m_properties.request(id, "_NET_WM_STATE", {change, above, 0, fromUser});
    }

    /// Minimised, or moved to a place where new screenshots are not seen.
    bool isPutAway(xcb_window_t id)
    {
        if (m_isUnmanaged)
            return false;
        constexpr quint32 iconic = 3;
        const QList<quint32> states = m_properties.numbers(id, "_NET_WM_STATE");
        const quint32 desktop = m_properties.numbers(id, "_NET_WM_DESKTOP").value(0, allDesktops);
        return m_properties.numbers(id, "WM_STATE").value(0) == iconic ||
               states.contains(m_properties.atom("_NET_WM_STATE_HIDDEN")) ||
               states.contains(m_properties.atom("_NET_WM_STATE_SHADED")) ||
               !states.contains(m_properties.atom("_NET_WM_STATE_ABOVE")) ||
               (desktop != allDesktops &&
                desktop != m_properties.numbers(m_properties.root(), "_NET_CURRENT_DESKTOP")
                               .value(0, desktop));
    }

    /// Whether the window could be seen only without the window manager. Some managers hide even a
    /// new window as long as they show the desktop.
    bool isHiddenByManager(const QWindow &window)
    {
        return m_properties.numbers(m_properties.root(), "_NET_SHOWING_DESKTOP").value(0) != 0 ||
               isUnderFullScreen(window);
    }

    /// Window managers keep the full-screen window that the user works in above all others. On its
    /// screen only a window that they do not manage can be seen.
    bool isUnderFullScreen(const QWindow &window)
    {
        const xcb_window_t active =
            m_properties.numbers(m_properties.root(), "_NET_ACTIVE_WINDOW").value(0);
        if (active == XCB_WINDOW_NONE || active == idOf(window))
            return false;
        return m_properties.numbers(active, "_NET_WM_STATE")
                   .contains(m_properties.atom("_NET_WM_STATE_FULLSCREEN")) &&
               placeOf(active).intersects(screenOf(window));
    }

    /// On the desktop, in device pixels.
    QRect placeOf(xcb_window_t window) const
    {
        const X11Owned<xcb_get_geometry_reply_t> size(
            xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, window), nullptr));
        const auto cookie = xcb_translate_coordinates(m_connection, window, m_own.root(), 0, 0);
        const X11Owned<xcb_translate_coordinates_reply_t> corner(
            xcb_translate_coordinates_reply(m_connection, cookie, nullptr));
        if (!size || !corner)
            return {};
        return {corner->dst_x, corner->dst_y, size->width, size->height};
    }

    /// The screen that the window stands on, or will stand on when it is shown, in device pixels;
    /// Qt leaves a screen's corner where the system has it.
    static QRect screenOf(const QWindow &window)
    {
        const QScreen *found = QGuiApplication::screenAt(window.geometry().center());
        const QScreen *screen = found ? found : window.screen();
        return {screen->geometry().topLeft(), screen->size() * screen->devicePixelRatio()};
    }

    bool hasKeyboard(xcb_window_t id) const
    {
        const X11Owned<xcb_get_input_focus_reply_t> reply(
            xcb_get_input_focus_reply(m_connection, xcb_get_input_focus(m_connection), nullptr));
        return reply && reply->focus == id;
    }

    /// The manager may not have let the window go yet, and would keep it in a frame that is hidden.
    void leaveFrame(const QWindow &window)
    {
        const QPoint corner = window.geometry().topLeft();
        xcb_reparent_window(m_connection, idOf(window), m_own.root(), int16_t(corner.x()),
                            int16_t(corner.y()));
    }

    /// Desktops hide, raise and minimise a group's windows together.
    void makeGroupOfItsOwn(xcb_window_t window)
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

    xcb_connection_t *m_connection;
    X11Connection m_own;
    CompositorWatch m_compositor;
    X11Properties m_properties;
    std::unique_ptr<WindowOutline> m_outline;
    /// Shown without the window manager, above everything.
    bool m_isUnmanaged = false;
    bool m_isNew = false;
};

/// Where the desktop lets ordinary programs say nothing more than what Qt says for them.
class PlainPanelWindow : public PanelWindow
{
public:
    Qt::WindowType windowType() const override { return Qt::Window; }
    QScreen *screen() const override { return QGuiApplication::primaryScreen(); }
    void setOutline(QWindow &, double) override {}
    void prepare(QWindow &) override {}
    bool bringToFront(QWindow &window) override
    {
        window.raise();
        return true;
    }
    void takeFocus(QWindow &window) override { window.requestActivate(); }
    bool showsTransparency() const override { return true; }
};

} // namespace

std::unique_ptr<PanelWindow> makePanelWindow()
{
    if (const auto *x11 = qGuiApp->nativeInterface<QNativeInterface::QX11Application>())
        return std::make_unique<X11PanelWindow>(x11->connection());
    return std::make_unique<PlainPanelWindow>();
}
