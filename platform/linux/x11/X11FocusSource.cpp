// SPDX-License-Identifier: MIT
#include "platform/linux/x11/X11FocusSource.h"

#include <QDeadlineTimer>

#include <chrono>
#include <xcb/res.h>

namespace
{

using namespace std::chrono_literals;

/// Dialogs of dialogs; a longer chain is a loop.
constexpr int longestChain = 8;

/// Between two looks.
constexpr auto pauseBetweenLooks = 30ms;

/// A server that other programs keep busy answers late. Then the last known state is used.
constexpr auto answerLimit = 10ms;

/// The requests about a window, in the order in which they are sent.
enum Question : size_t { Class, Types, NotedByGtk, NotedByKde, Leader, Process };

/// The process id that a client gives may come from another machine or a sandbox; the server knows
/// the real one.
unsigned int askProcess(xcb_connection_t *connection, xcb_window_t window)
{
    const xcb_res_client_id_spec_t spec = {window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    return xcb_res_query_client_ids(connection, 1, &spec).sequence;
}

qint64 processIn(const xcb_res_query_client_ids_reply_t *reply)
{
    if (!reply)
        return 0;
    for (auto ids = xcb_res_query_client_ids_ids_iterator(reply); ids.rem > 0;
         xcb_res_client_id_value_next(&ids)) {
        if ((ids.data->spec.mask & XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID) &&
            xcb_res_client_id_value_value_length(ids.data) > 0)
            return *xcb_res_client_id_value_value(ids.data);
    }
    return 0;
}

} // namespace

X11FocusSource::X11FocusSource(bool seesAllWindows)
    : m_seesAllWindows(seesAllWindows), m_connection(XCB_EVENT_MASK_PROPERTY_CHANGE)
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
    // Requesting an extension that the server lacks ends the connection.
    const auto *extension = xcb_get_extension_data(m_connection.get(), &xcb_res_id);
    m_knowsProcesses = extension && extension->present;
    connect(&m_connection, &X11Connection::eventArrived, this, &X11FocusSource::readEvent);
    connect(&m_connection, &X11Connection::inputRead, this, &X11FocusSource::advance);
    m_pause.setSingleShot(true);
    m_pause.setInterval(pauseBetweenLooks);
    connect(&m_pause, &QTimer::timeout, this, &X11FocusSource::lookWhenOutdated);
    look();
}

void X11FocusSource::update()
{
    const QDeadlineTimer deadline(answerLimit);
    // A look that has already begun may predate the last change.
    while (m_replies && m_connection.waitForInput(deadline)) {
    }
    look();
    while (m_replies && m_connection.waitForInput(deadline)) {
    }
}

void X11FocusSource::readEvent(const xcb_generic_event_t *event)
{
    if ((event->response_type & 0x7f) != XCB_PROPERTY_NOTIFY)
        return;
    const auto *notify = reinterpret_cast<const xcb_property_notify_event_t *>(event);
    if (notify->atom == m_atoms[ActiveWindow])
        m_isOutdated = true;
}

void X11FocusSource::lookWhenOutdated()
{
    if (m_isOutdated && !m_pause.isActive())
        look();
}

void X11FocusSource::look()
{
    if (m_replies || !m_connection.isAlive())
        return;
    m_isOutdated = false;
    m_replies.emplace(m_connection.get());
    m_replies->askProperty(m_connection.root(), m_atoms[ActiveWindow]);
    xcb_flush(m_connection.get());
}

void X11FocusSource::advance()
{
    while (m_replies && m_replies->haveCome())
        readAnswers();
    lookWhenOutdated();
}

void X11FocusSource::readAnswers()
{
    const bool isFirst = m_asked.isEmpty();
    const quint32 next = m_replies->numbers(isFirst ? size_t(0) : Leader).value(0, XCB_WINDOW_NONE);
    if (!isFirst) {
        if (const std::optional<FocusedWindow> window = describedWindow())
            m_found = window;
    }
    const bool leadsOn = next != XCB_WINDOW_NONE && next != m_connection.root();
    if (leadsOn && !m_asked.contains(next) && m_asked.size() < longestChain)
        ask(next);
    else
        finish();
}

void X11FocusSource::ask(quint32 window)
{
    m_asked.append(window);
    m_replies.emplace(m_connection.get());
    for (const quint32 property : {quint32(XCB_ATOM_WM_CLASS), m_atoms[WindowType], m_atoms[GtkId],
                                   m_atoms[KdeDesktopFile], quint32(XCB_ATOM_WM_TRANSIENT_FOR)})
        m_replies->askProperty(window, property);
    if (m_knowsProcesses)
        m_replies->expect(askProcess(m_connection.get(), window));
    xcb_flush(m_connection.get());
}

/// Absent for a window that is gone.
std::optional<FocusedWindow> X11FocusSource::describedWindow() const
{
    if (!m_replies->reply<xcb_get_property_reply_t>(Class))
        return std::nullopt;
    const QList<QByteArray> names = m_replies->bytes(Class).split('\0');
    FocusedWindow window;
    window.instance = QString::fromUtf8(names.value(0));
    window.windowClass = QString::fromUtf8(names.value(1));
    window.notedIds = {QString::fromUtf8(m_replies->bytes(NotedByGtk)),
                       QString::fromUtf8(m_replies->bytes(NotedByKde))};
    if (m_knowsProcesses)
        window.processId = processIn(m_replies->reply<xcb_res_query_client_ids_reply_t>(Process));
    const QList<uint32_t> types = m_replies->numbers(Types);
    for (const AtomName type : {Dock, Desktop, Notification})
        window.isOrdinary = window.isOrdinary && !types.contains(m_atoms[type]);
    return window;
}

void X11FocusSource::finish()
{
    m_replies.reset();
    m_asked.clear();
    m_pause.start();
    Q_EMIT focusChanged(std::exchange(m_found, std::nullopt));
}
