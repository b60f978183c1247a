// SPDX-License-Identifier: MIT
#include "platform/linux/x11/DesktopBars.h"

#include "platform/linux/x11/X11Connection.h"

#include <QMargins>

#include <algorithm>
#include <chrono>
#include <vector>

using namespace std::chrono_literals;

namespace
{

/// Left, right, top and bottom; more numbers follow in newer programs' property.
constexpr quint32 sides = 4;

/// No screen is larger than the server's coordinates, which have 16 bits.
constexpr quint32 largestNumber = 32'767;

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

QMargins marginsOf(const X11Owned<xcb_get_property_reply_t> &reply)
{
    if (!reply || reply->format != 32 || reply->value_len < sides)
        return {};
    const auto *numbers = static_cast<const quint32 *>(xcb_get_property_value(reply.get()));
    return {int(numbers[0]), int(numbers[2]), int(numbers[1]), int(numbers[3])};
}

bool has(const X11Owned<xcb_get_property_reply_t> &reply, xcb_atom_t value)
{
    if (!reply || reply->format != 32)
        return false;
    const auto *values = static_cast<const quint32 *>(xcb_get_property_value(reply.get()));
    return std::find(values, values + reply->value_len, value) != values + reply->value_len;
}

/// How much of one edge of a screen a bar takes.
/// @param reserved what it says, from the edge of the whole desktop
/// @param outside from there to the screen's edge
/// @param depth from the screen's edge to the far side of the bar's window. A bar may reserve less,
///        for instance because its icons grow under the mouse. A bar on the lower of two screens
///        may count from that screen's edge; then its window tells the truth.
int taken(int reserved, int outside, int depth, int screen)
{
    if (reserved <= 0)
        return 0;
    const int result = reserved > outside ? std::min(reserved - outside, depth) : depth;
    return result <= screen / 2 ? result : 0;
}

/// @param reserved what a bar takes from the edges of the whole desktop, as it says
QMargins takenBy(const QMargins &reserved, const QRect &bar, const QRect &screen,
                 const QSize &desktop)
{
    const QRect place = bar & screen;
    if (place.isEmpty())
        return {};
    const int right = desktop.width() - screen.right() - 1;
    const int bottom = desktop.height() - screen.bottom() - 1;
    return {
        taken(reserved.left(), screen.left(), place.right() + 1 - screen.left(), screen.width()),
        taken(reserved.top(), screen.top(), place.bottom() + 1 - screen.top(), screen.height()),
        taken(reserved.right(), right, screen.right() + 1 - place.left(), screen.width()),
        taken(reserved.bottom(), bottom, screen.bottom() + 1 - place.top(), screen.height())};
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
    const bool arePlaces = std::all_of(areas.begin(), areas.end(),
                                       [](quint32 number) { return number <= largestNumber; });
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
        return xcb_get_property(x11, 0, window, m_properties.atom(property), type, 0, sides);
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
        const auto types = replyTo(x11, each.types, &xcb_get_property_reply);
        const QMargins reserved = marginsOf(replyTo(x11, each.reserved, &xcb_get_property_reply));
        const QMargins older =
            marginsOf(replyTo(x11, each.reservedByOldPrograms, &xcb_get_property_reply));
        const auto size = replyTo(x11, each.size, &xcb_get_geometry_reply);
        const auto corner = replyTo(x11, each.corner, &xcb_translate_coordinates_reply);
        const bool isDock = has(types, m_properties.atom("_NET_WM_WINDOW_TYPE_DOCK"));
        const QMargins margins = reserved.isNull() ? older : reserved;
        if (size && corner && (isDock || !margins.isNull()))
            found.append(
                {each.window, margins, {corner->dst_x, corner->dst_y, size->width, size->height}});
    }
    return found;
}

std::optional<QRect> DesktopBars::freePart(const QRect &screen) const
{
    const auto reported = reportedPart(screen);
    if (reported)
        return reported;
    const auto desktop =
        replyTo(m_x11.get(), xcb_get_geometry(m_x11.get(), m_x11.root()), &xcb_get_geometry_reply);
    const QList<Bar> found = bars();
    watch(found);
    m_x11.readEventsSoon();
    if (!desktop)
        return std::nullopt;
    bool hasBars = false;
    QMargins margins;
    for (const Bar &bar : found) {
        hasBars = hasBars || !bar.reserved.isNull();
        margins =
            margins | takenBy(bar.reserved, bar.place, screen, {desktop->width, desktop->height});
    }
    return hasBars ? std::optional(screen.marginsRemoved(margins)) : std::nullopt;
}
