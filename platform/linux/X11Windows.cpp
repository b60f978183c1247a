#include "platform/linux/X11Windows.h"

#include <QSocketNotifier>

#include <cstdlib>
#include <cstring>
#include <xcb/res.h>
#include <xcb/xcb.h>

namespace
{

/// Dialogs of dialogs; more is a circle.
constexpr int longestChain = 8;

/// In units of four bytes: longer than any class, id or type list in use.
constexpr uint32_t longestProperty = 512;

struct Free {
    void operator()(void *reply) const { std::free(reply); }
};

template <typename Reply>
using Owned = std::unique_ptr<Reply, Free>;

using PropertyCookie = xcb_get_property_cookie_t;
using PropertyReply = Owned<xcb_get_property_reply_t>;

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
    const Owned<xcb_res_query_client_ids_reply_t> reply(
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

void X11Windows::Disconnect::operator()(xcb_connection_t *connection) const
{
    xcb_disconnect(connection);
}

X11Windows::X11Windows()
{
    int screenNumber = 0;
    m_connection.reset(xcb_connect(nullptr, &screenNumber));
    if (xcb_connection_has_error(m_connection.get()))
        return;
    auto screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection.get()));
    while (screenNumber-- > 0 && screen.rem > 1)
        xcb_screen_next(&screen);
    m_root = screen.data->root;

    const uint32_t wanted = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(m_connection.get(), m_root, XCB_CW_EVENT_MASK, &wanted);
    xcb_prefetch_extension_data(m_connection.get(), &xcb_res_id);
    internAtoms();
    // To ask a server for what it lacks ends the connection.
    const auto *extension = xcb_get_extension_data(m_connection.get(), &xcb_res_id);
    m_knowsProcesses = extension && extension->present;

    m_notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_connection.get()),
                                                   QSocketNotifier::Read);
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &X11Windows::readEvents);
}

X11Windows::~X11Windows() = default;

void X11Windows::internAtoms()
{
    constexpr std::array<const char *, atomCount> names = {
        "_NET_ACTIVE_WINDOW",
        "_NET_WM_WINDOW_TYPE",
        "_NET_WM_WINDOW_TYPE_DOCK",
        "_NET_WM_WINDOW_TYPE_DESKTOP",
        "_NET_WM_WINDOW_TYPE_NOTIFICATION",
        "_GTK_APPLICATION_ID",
        "_KDE_NET_WM_DESKTOP_FILE",
    };
    std::array<xcb_intern_atom_cookie_t, atomCount> cookies = {};
    for (size_t i = 0; i < names.size(); ++i)
        cookies[i] = xcb_intern_atom_unchecked(m_connection.get(), 0,
                                               uint16_t(std::strlen(names[i])), names[i]);
    for (size_t i = 0; i < names.size(); ++i) {
        const Owned<xcb_intern_atom_reply_t> reply(
            xcb_intern_atom_reply(m_connection.get(), cookies[i], nullptr));
        m_atoms[i] = reply ? reply->atom : quint32(XCB_ATOM_NONE);
    }
}

void X11Windows::readEvents()
{
    bool changed = false;
    while (const Owned<xcb_generic_event_t> event{xcb_poll_for_event(m_connection.get())}) {
        if ((event->response_type & 0x7f) != XCB_PROPERTY_NOTIFY)
            continue;
        const auto *notify = reinterpret_cast<const xcb_property_notify_event_t *>(event.get());
        changed = changed || notify->atom == m_atoms[ActiveWindow];
    }
    if (xcb_connection_has_error(m_connection.get()))
        m_notifier->setEnabled(false);
    if (changed)
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
        if (leader == XCB_WINDOW_NONE || leader == m_root)
            break;
        window = leader;
    }
    return window;
}

std::optional<X11Window> X11Windows::activeWindow()
{
    if (xcb_connection_has_error(m_connection.get()))
        return std::nullopt;
    const quint32 window = windowProperty(m_root, m_atoms[ActiveWindow]);
    // Replies may have brought events along, of which the socket will not tell any more.
    QMetaObject::invokeMethod(this, &X11Windows::readEvents, Qt::QueuedConnection);
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
