#include "platform/linux/x11/X11Windows.h"

#include <cstring>
#include <xcb/res.h>

namespace
{

/// Dialogs of dialogs; more is a circle.
constexpr int longestChain = 8;

/// In units of four bytes: longer than any class, id or type list in use.
constexpr uint32_t longestProperty = 512;

using PropertyCookie = xcb_get_property_cookie_t;
using PropertyReply = X11Owned<xcb_get_property_reply_t>;

PropertyCookie askProperty(xcb_connection_t *connection, xcb_window_t window, xcb_atom_t property)
{
    return xcb_get_property_unchecked(connection, 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0,
                                      longestProperty);
}

PropertyReply takeProperty(xcb_connection_t *connection, PropertyCookie cookie)
{
    return PropertyReply(xcb_get_property_reply(connection, cookie, nullptr));
}

QByteArray bytesOf(const PropertyReply &reply)
{
    if (!reply || reply->format != 8)
        return {};
    return {static_cast<const char *>(xcb_get_property_value(reply.get())),
            xcb_get_property_value_length(reply.get())};
}

QList<uint32_t> numbersOf(const PropertyReply &reply)
{
    if (!reply || reply->format != 32)
        return {};
    const int length = xcb_get_property_value_length(reply.get());
    QList<uint32_t> numbers(length / int(sizeof(uint32_t)));
    std::memcpy(numbers.data(), xcb_get_property_value(reply.get()),
                size_t(numbers.size()) * sizeof(uint32_t));
    return numbers;
}

/// What a client says of its own process id may be a number of another machine or of a sandbox;
/// the server knows.
xcb_res_query_client_ids_cookie_t askProcess(xcb_connection_t *connection, xcb_window_t window)
{
    const xcb_res_client_id_spec_t spec = {window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    return xcb_res_query_client_ids_unchecked(connection, 1, &spec);
}

qint64 takeProcess(xcb_connection_t *connection, xcb_res_query_client_ids_cookie_t cookie)
{
    const X11Owned<xcb_res_query_client_ids_reply_t> reply(
        xcb_res_query_client_ids_reply(connection, cookie, nullptr));
    if (!reply)
        return 0;
    for (auto ids = xcb_res_query_client_ids_ids_iterator(reply.get()); ids.rem > 0;
         xcb_res_client_id_value_next(&ids)) {
        if ((ids.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) &&
            xcb_res_client_id_value_value_length(ids.data) > 0)
            return *xcb_res_client_id_value_value(ids.data);
    }
    return 0;
}

} // namespace

X11Windows::X11Windows() : m_connection(XCB_EVENT_MASK_PROPERTY_CHANGE)
{
    if (!m_connection.isAlive())
        return;
    xcb_prefetch_extension_data(m_connection.get(), &xcb_res_id);
    m_atoms = m_connection.atoms({
        "_NET_ACTIVE_WINDOW",
        "_NET_WM_WINDOW_TYPE",
        "_NET_WM_WINDOW_TYPE_DOCK",
        "_NET_WM_WINDOW_TYPE_DESKTOP",
        "_NET_WM_WINDOW_TYPE_NOTIFICATION",
        "_GTK_APPLICATION_ID",
        "_KDE_NET_WM_DESKTOP_FILE",
    });
    // To ask a server for what it lacks ends the connection.
    const auto *extension = xcb_get_extension_data(m_connection.get(), &xcb_res_id);
    m_knowsProcesses = extension && extension->present;
    connect(&m_connection, &X11Connection::eventArrived, this, &X11Windows::readEvent);
    m_connection.readEventsSoon();
}

void X11Windows::readEvent(const xcb_generic_event_t *event)
{
    if ((event->response_type & 0x7f) != XCB_PROPERTY_NOTIFY)
        return;
    const auto *notify = reinterpret_cast<const xcb_property_notify_event_t *>(event);
    if (notify->atom == m_atoms[ActiveWindow])
        Q_EMIT activeWindowChanged();
}

quint32 X11Windows::windowProperty(quint32 window, quint32 property)
{
    const PropertyReply reply =
        takeProperty(m_connection.get(), askProperty(m_connection.get(), window, property));
    return numbersOf(reply).value(0, XCB_WINDOW_NONE);
}

quint32 X11Windows::leaderOf(quint32 window)
{
    for (int step = 0; step < longestChain; ++step) {
        const quint32 leader = windowProperty(window, XCB_ATOM_WM_TRANSIENT_FOR);
        if (leader == XCB_WINDOW_NONE || leader == m_connection.root())
            break;
        window = leader;
    }
    return window;
}

std::optional<X11Window> X11Windows::activeWindow()
{
    if (!m_connection.isAlive())
        return std::nullopt;
    const quint32 window = windowProperty(m_connection.root(), m_atoms[ActiveWindow]);
    m_connection.readEventsSoon();
    if (window == XCB_WINDOW_NONE)
        return std::nullopt;
    const quint32 leader = leaderOf(window);
    if (const std::optional<X11Window> described = describe(leader))
        return described;
    return leader == window ? std::nullopt : describe(window);
}

std::optional<X11Window> X11Windows::describe(quint32 window)
{
    xcb_connection_t *const connection = m_connection.get();
    const auto ask = [&](xcb_atom_t property) { return askProperty(connection, window, property); };
    const PropertyCookie classCookie = ask(XCB_ATOM_WM_CLASS);
    const PropertyCookie typeCookie = ask(m_atoms[WindowType]);
    const PropertyCookie gtkCookie = ask(m_atoms[GtkId]);
    const PropertyCookie kdeCookie = ask(m_atoms[KdeDesktopFile]);
    const auto processCookie =
        m_knowsProcesses ? askProcess(connection, window) : xcb_res_query_client_ids_cookie_t();

    const PropertyReply classReply = takeProperty(connection, classCookie);
    const QList<uint32_t> types = numbersOf(takeProperty(connection, typeCookie));
    X11Window result;
    result.id = window;
    result.gtkApplicationId = QString::fromUtf8(bytesOf(takeProperty(connection, gtkCookie)));
    result.desktopFile = QString::fromUtf8(bytesOf(takeProperty(connection, kdeCookie)));
    if (m_knowsProcesses)
        result.processId = takeProcess(connection, processCookie);
    if (!classReply)
        return std::nullopt;

    const QList<QByteArray> names = bytesOf(classReply).split('\0');
    result.instance = QString::fromUtf8(names.value(0));
    result.windowClass = QString::fromUtf8(names.value(1));
    for (const AtomName type : {Dock, Desktop, Notification})
        result.isOrdinary = result.isOrdinary && !types.contains(m_atoms[type]);
    return result;
}
