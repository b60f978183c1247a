#include "platform/PanelWindow.h"

#include <QGuiApplication>
#include <QList>
#include <QWindow>

#include <xcb/xcb.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>

namespace
{

struct Free {
    void operator()(void *memory) const { std::free(memory); }
};

template <typename Reply>
using ReplyPointer = std::unique_ptr<Reply, Free>;

constexpr quint32 allDesktops = 0xFFFFFFFF;

/// A window on an X server, by its properties. Window managers read most of them when the window
/// is mapped, and take some away when it is unmapped.
class X11PanelWindow : public PanelWindow
{
public:
    explicit X11PanelWindow(xcb_connection_t *connection) : m_connection(connection) {}

    /// Qt makes a tool window a dialogue of the program's group, and KWin hides those with the
    /// program's other windows when the user turns to another application.
    Qt::WindowType windowType() const override { return Qt::Window; }

    void prepare(QWindow &window) override
    {
        const auto id = static_cast<xcb_window_t>(window.winId());
        makeGroupOfItsOwn(id);
        setAtoms(id, "_NET_WM_WINDOW_TYPE",
                 {atom("_NET_WM_WINDOW_TYPE_UTILITY"), atom("_NET_WM_WINDOW_TYPE_NORMAL")});
        setAtoms(id, "_NET_WM_STATE",
                 {atom("_NET_WM_STATE_STICKY"), atom("_NET_WM_STATE_SKIP_TASKBAR"),
                  atom("_NET_WM_STATE_SKIP_PAGER"), atom("_NET_WM_STATE_ABOVE")});
        set(id, atom("_NET_WM_DESKTOP"), XCB_ATOM_CARDINAL, &allDesktops, 1);
        xcb_flush(m_connection);
    }

    void bringToFront(QWindow &window) override { window.raise(); }
    void takeFocus(QWindow &window) override { window.requestActivate(); }

    bool showsTransparency() const override
    {
        const auto cookie =
            xcb_get_selection_owner(m_connection, atom(compositorSelection().constData()));
        const ReplyPointer<xcb_get_selection_owner_reply_t> reply(
            xcb_get_selection_owner_reply(m_connection, cookie, nullptr));
        return reply && reply->owner != XCB_NONE;
    }

private:
    /// The names' round trips to the server happen once each time that the panel is shown.
    xcb_atom_t atom(const char *name) const
    {
        const auto cookie =
            xcb_intern_atom(m_connection, false, static_cast<uint16_t>(std::strlen(name)), name);
        const ReplyPointer<xcb_intern_atom_reply_t> reply(
            xcb_intern_atom_reply(m_connection, cookie, nullptr));
        return reply ? reply->atom : xcb_atom_t(XCB_ATOM_NONE);
    }

    void set(xcb_window_t window, xcb_atom_t property, xcb_atom_t type, const void *values,
             std::size_t count) const
    {
        xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, property, type, 32,
                            static_cast<uint32_t>(count), values);
    }

    void setAtoms(xcb_window_t window, const char *property, const QList<xcb_atom_t> &atoms) const
    {
        set(window, atom(property), XCB_ATOM_ATOM, atoms.constData(),
            static_cast<std::size_t>(atoms.size()));
    }

    /// Desktops hide, raise and minimise a group's windows together.
    void makeGroupOfItsOwn(xcb_window_t window) const
    {
        constexpr std::size_t flags = 0;
        constexpr std::size_t group = 8;
        constexpr quint32 groupHint = 64;
        std::array<quint32, 9> hints = {};

        const auto cookie = xcb_get_property(m_connection, false, window, XCB_ATOM_WM_HINTS,
                                             XCB_ATOM_WM_HINTS, 0, hints.size());
        const ReplyPointer<xcb_get_property_reply_t> reply(
            xcb_get_property_reply(m_connection, cookie, nullptr));
        if (reply && reply->format == 32 && reply->value_len == hints.size())
            std::memcpy(hints.data(), xcb_get_property_value(reply.get()), sizeof hints);
        hints[flags] |= groupHint;
        hints[group] = window;
        set(window, XCB_ATOM_WM_HINTS, XCB_ATOM_WM_HINTS, hints.data(), hints.size());
    }

    /// A compositor owns the selection of its screen.
    static QByteArray compositorSelection()
    {
        char *host = nullptr;
        int display = 0;
        int screen = 0;
        xcb_parse_display(nullptr, &host, &display, &screen);
        std::free(host);
        return "_NET_WM_CM_S" + QByteArray::number(screen);
    }

    xcb_connection_t *m_connection;
};

/// Where the desktop lets ordinary programs say nothing more than what Qt says for them.
class PlainPanelWindow : public PanelWindow
{
public:
    Qt::WindowType windowType() const override { return Qt::Window; }
    void prepare(QWindow &) override {}
    void bringToFront(QWindow &window) override { window.raise(); }
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
