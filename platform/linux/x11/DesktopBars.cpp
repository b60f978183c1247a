// SPDX-License-Identifier: MIT
#include "platform/linux/x11/DesktopBars.h"

#include "platform/linux/x11/X11Connection.h"

#include <algorithm>
#include <chrono>
#include <vector>

using namespace std::chrono_literals;

namespace
{

/// A bar that grows or moves changes its window and its property, and then the window manager
/// reports a new work area.
constexpr auto timeToSettle = 50ms;

struct Questions {
    quint32 window;
    xcb_get_property_cookie_t types;
    xcb_get_property_cookie_t reserved;
    xcb_get_property_cookie_t reservedByOldPrograms;
    xcb_get_geometry_cookie_t size;
    xcb_translate_coordinates_cookie_t corner;
};

QList<quint32> numbersIn(const X11Owned<xcb_get_property_reply_t> &reply)
{
    if (!reply || reply->format != 32)
        return {};
    const auto *first = static_cast<const quint32 *>(xcb_get_property_value(reply.get()));
    return {first, first + reply->value_len};
}

template <typename Reply, typename Cookie>
X11Owned<Reply> replyTo(xcb_connection_t *connection, Cookie cookie,
                        Reply *(*take)(xcb_connection_t *, Cookie, xcb_generic_error_t **))
{
    xcb_generic_error_t *error = nullptr;
    X11Owned<Reply> reply(take(connection, cookie, &error));
    std::free(error);
    return reply;
}

} // namespace

DesktopBars::DesktopBars(X11Connection &x11) : m_x11(x11), m_properties(x11.get(), x11.root())
{
    m_settled.setSingleShot(true);
    m_settled.setInterval(timeToSettle);
    connect(&m_settled, &QTimer::timeout, this, &DesktopBars::changed);
    connect(&m_unlisted, &UnlistedBars::mayHaveCome, this, &DesktopBars::settle);
    if (!m_x11.isAlive())
        return;
    m_telling = m_properties.atoms({"_NET_WORKAREA", "_NET_CLIENT_LIST", "_NET_CURRENT_DESKTOP",
                                    "_NET_SUPPORTED", "_NET_WM_STRUT_PARTIAL", "_NET_WM_STRUT"});
    connect(&m_x11, &X11Connection::eventArrived, this, &DesktopBars::readEvent);
}

bool DesktopBars::areInWorkArea() const
{
    return !m_properties.numbers(m_x11.root(), "_NET_WORKAREA").isEmpty();
}

/// A property that nobody supports any more is what a former window manager has left.
bool DesktopBars::isReported() const
{
    return m_properties.numbers(m_x11.root(), "_NET_SUPPORTED")
        .contains(m_properties.atom("_GTK_WORKAREAS"));
}

/// GNOME's bars are not windows, but it reports a work area for each screen.
std::optional<QRect> DesktopBars::reportedPart(const QRect &screen) const
{
    if (!isReported())
        return std::nullopt;
    const quint32 desktop = m_properties.numbers(m_x11.root(), "_NET_CURRENT_DESKTOP").value(0, 0);
    const QByteArray property = "_GTK_WORKAREAS_D" + QByteArray::number(desktop);
    if (const quint32 atom = m_properties.atom(property.constData()); !m_telling.contains(atom))
        m_telling.append(atom);
    const QList<quint32> areas = m_properties.numbers(m_x11.root(), property.constData());
    const bool arePlaces = std::all_of(areas.begin(), areas.end(), [](quint32 number) {
        return number <= ReservedEdges::largestNumber;
    });
    for (qsizetype first = 0; arePlaces && first + 3 < areas.size(); first += 4) {
        const QRect area{int(areas[first]), int(areas[first + 1]), int(areas[first + 2]),
                         int(areas[first + 3])};
        if (screen.contains(area) && area.width() >= screen.width() / 2 &&
            area.height() >= screen.height() / 2)
            return area;
    }
    return std::nullopt;
}

void DesktopBars::watch(const QList<Bar> &bars) const
{
    const quint32 events = XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    m_watched.clear();
    for (const Bar &bar : bars) {
        m_watched.append(bar.window);
        xcb_change_window_attributes(m_x11.get(), bar.window, XCB_CW_EVENT_MASK, &events);
    }
    xcb_flush(m_x11.get());
}

void DesktopBars::readEvent(const xcb_generic_event_t *event)
{
    if (tellsOfBars(event))
        settle();
}

void DesktopBars::settle()
{
    if (!m_settled.isActive())
        m_settled.start();
}

bool DesktopBars::tellsOfBars(const xcb_generic_event_t *event) const
{
    switch (event->response_type & 0x7f) {
    case XCB_PROPERTY_NOTIFY: {
        const auto *notify = reinterpret_cast<const xcb_property_notify_event_t *>(event);
        return m_telling.contains(notify->atom);
    }
    case XCB_CONFIGURE_NOTIFY:
        return m_watched.contains(
            reinterpret_cast<const xcb_configure_notify_event_t *>(event)->window);
    case XCB_UNMAP_NOTIFY:
        return m_watched.contains(
            reinterpret_cast<const xcb_unmap_notify_event_t *>(event)->window);
    case XCB_REPARENT_NOTIFY:
        return m_watched.contains(
            reinterpret_cast<const xcb_reparent_notify_event_t *>(event)->window);
    default:
        return false;
    }
}

/// A window manager that knows of bars reports a work area, and lists them.
QList<quint32> DesktopBars::candidates() const
{
    QList<quint32> windows = m_properties.numbers(m_x11.root(), "_NET_CLIENT_LIST");
    if (areInWorkArea())
        return windows;
    const QList<quint32> unlisted = m_unlisted.find();
    for (const quint32 window : unlisted) {
        if (!windows.contains(window))
            windows.append(window);
    }
    return windows;
}

QList<DesktopBars::Bar> DesktopBars::bars() const
{
    xcb_connection_t *const x11 = m_x11.get();
    const auto ask = [&](quint32 window, const char *property, xcb_atom_t type) {
        return xcb_get_property(x11, 0, window, m_properties.atom(property), type, 0,
                                ReservedEdges::most);
    };
    // All are asked before the first reply is awaited.
    std::vector<Questions> asked;
    const QList<quint32> windows = candidates();
    for (const quint32 window : windows) {
        asked.push_back({window, ask(window, "_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM),
                         ask(window, "_NET_WM_STRUT_PARTIAL", XCB_ATOM_CARDINAL),
                         ask(window, "_NET_WM_STRUT", XCB_ATOM_CARDINAL),
                         xcb_get_geometry(x11, window),
                         xcb_translate_coordinates(x11, window, m_x11.root(), 0, 0)});
    }
    QList<Bar> found;
    for (const Questions &each : asked) {
        const QList<quint32> types = numbersIn(replyTo(x11, each.types, &xcb_get_property_reply));
        const ReservedEdges reserved(
            numbersIn(replyTo(x11, each.reserved, &xcb_get_property_reply)));
        const ReservedEdges older(
            numbersIn(replyTo(x11, each.reservedByOldPrograms, &xcb_get_property_reply)));
        const auto size = replyTo(x11, each.size, &xcb_get_geometry_reply);
        const auto corner = replyTo(x11, each.corner, &xcb_translate_coordinates_reply);
        const bool isDock = types.contains(m_properties.atom("_NET_WM_WINDOW_TYPE_DOCK"));
        const ReservedEdges &edges = reserved.isEmpty() ? older : reserved;
        if (size && corner && (isDock || !edges.isEmpty()))
            found.append(
                {each.window, edges, {corner->dst_x, corner->dst_y, size->width, size->height}});
    }
    m_x11.readEventsSoon();
    return found;
}

QSize DesktopBars::desktop() const
{
    const auto whole =
        replyTo(m_x11.get(), xcb_get_geometry(m_x11.get(), m_x11.root()), &xcb_get_geometry_reply);
    return whole ? QSize(whole->width, whole->height) : QSize();
}

std::optional<QRect> DesktopBars::freePart(const QRect &screen) const
{
    const auto reported = reportedPart(screen);
    if (reported)
        return reported;
    const QSize whole = desktop();
    const QList<Bar> found = bars();
    watch(found);
    if (whole.isEmpty())
        return std::nullopt;
    bool hasBars = false;
    QMargins margins;
    for (const Bar &bar : found) {
        hasBars = hasBars || !bar.reserved.isEmpty();
        margins = margins | bar.reserved.takenFrom(screen, bar.place, whole);
    }
    return hasBars ? std::optional(screen.marginsRemoved(margins)) : std::nullopt;
}

bool DesktopBars::reserve(const QRect &place) const
{
    const QSize whole = desktop();
    const QList<Bar> found = bars();
    return std::any_of(found.begin(), found.end(),
                       [&](const Bar &bar) { return bar.reserved.cover(place, whole); });
}
