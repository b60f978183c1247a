// SPDX-License-Identifier: MIT
#include "platform/linux/x11/DesktopBars.h"

#include "platform/linux/x11/X11Connection.h"

#include <QMargins>

#include <algorithm>
#include <vector>

namespace
{

/// Left, right, top and bottom; more numbers follow in newer programs' property.
constexpr quint32 sides = 4;

struct Questions {
    xcb_get_property_cookie_t reserved;
    xcb_get_property_cookie_t reservedByOldPrograms;
    xcb_get_geometry_cookie_t size;
    xcb_translate_coordinates_cookie_t corner;
};

struct Bar {
    QMargins reserved; ///< from the edges of the whole desktop, as the bar says
    QRect place;
};

QMargins marginsOf(const X11Owned<xcb_get_property_reply_t> &reply)
{
    if (!reply || reply->format != 32 || reply->value_len < sides)
        return {};
    const auto *numbers = static_cast<const quint32 *>(xcb_get_property_value(reply.get()));
    return {int(numbers[0]), int(numbers[2]), int(numbers[1]), int(numbers[3])};
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

QMargins takenBy(const Bar &bar, const QRect &screen, const QSize &desktop)
{
    const QRect place = bar.place & screen;
    if (place.isEmpty())
        return {};
    const int right = desktop.width() - screen.right() - 1;
    const int bottom = desktop.height() - screen.bottom() - 1;
    return {
        taken(bar.reserved.left(), screen.left(), place.right() + 1 - screen.left(),
              screen.width()),
        taken(bar.reserved.top(), screen.top(), place.bottom() + 1 - screen.top(), screen.height()),
        taken(bar.reserved.right(), right, screen.right() + 1 - place.left(), screen.width()),
        taken(bar.reserved.bottom(), bottom, screen.bottom() + 1 - place.top(), screen.height())};
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

DesktopBars::DesktopBars(X11Connection &x11) : m_x11(x11), m_properties(x11.get(), x11.root()) {}

/// GNOME's bars are not windows, but it reports a work area for each screen.
std::optional<QRect> DesktopBars::reportedPart(const QRect &screen) const
{
    const quint32 desktop = m_properties.numbers(m_x11.root(), "_NET_CURRENT_DESKTOP").value(0, 0);
    const QByteArray property = "_GTK_WORKAREAS_D" + QByteArray::number(desktop);
    const QList<quint32> areas = m_properties.numbers(m_x11.root(), property.constData());
    for (qsizetype first = 0; first + 3 < areas.size(); first += 4) {
        const QRect area{int(areas[first]), int(areas[first + 1]), int(areas[first + 2]),
                         int(areas[first + 3])};
        if (!area.isEmpty() && screen.contains(area))
            return area;
    }
    return std::nullopt;
}

std::optional<QRect> DesktopBars::freePart(const QRect &screen) const
{
    if (const auto reported = reportedPart(screen))
        return reported;
    xcb_connection_t *const x11 = m_x11.get();
    const auto ask = [&](quint32 window, const char *property) {
        return xcb_get_property(x11, 0, window, m_properties.atom(property), XCB_ATOM_CARDINAL, 0,
                                sides);
    };
    // All are asked before the first reply is awaited.
    const auto desktopCookie = xcb_get_geometry(x11, m_x11.root());
    std::vector<Questions> asked;
    const QList<quint32> windows = m_properties.numbers(m_x11.root(), "_NET_CLIENT_LIST");
    for (const quint32 window : windows) {
        asked.push_back({ask(window, "_NET_WM_STRUT_PARTIAL"), ask(window, "_NET_WM_STRUT"),
                         xcb_get_geometry(x11, window),
                         xcb_translate_coordinates(x11, window, m_x11.root(), 0, 0)});
    }
    const auto desktop = replyTo(x11, desktopCookie, &xcb_get_geometry_reply);
    bool hasBars = false;
    QMargins margins;
    for (const Questions &each : asked) {
        const QMargins reserved = marginsOf(replyTo(x11, each.reserved, &xcb_get_property_reply));
        const QMargins older =
            marginsOf(replyTo(x11, each.reservedByOldPrograms, &xcb_get_property_reply));
        const auto size = replyTo(x11, each.size, &xcb_get_geometry_reply);
        const auto corner = replyTo(x11, each.corner, &xcb_translate_coordinates_reply);
        if (!desktop || !size || !corner)
            continue;
        const Bar bar = {reserved.isNull() ? older : reserved,
                         {corner->dst_x, corner->dst_y, size->width, size->height}};
        hasBars = hasBars || !bar.reserved.isNull();
        margins = margins | takenBy(bar, screen, {desktop->width, desktop->height});
    }
    m_x11.readEventsSoon();
    return hasBars ? std::optional(screen.marginsRemoved(margins)) : std::nullopt;
}
