// SPDX-License-Identifier: MIT
#include "platform/linux/x11/ReservedEdges.h"

#include <algorithm>
#include <array>

namespace
{

enum Side { Left, Right, Top, Bottom };
constexpr qsizetype sides = 4;

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

} // namespace

ReservedEdges::ReservedEdges(const QList<quint32> &property)
{
    if (property.size() < sides)
        return;
    for (const quint32 number : property)
        m_property.append(int(std::min(number, largestNumber)));
}

bool ReservedEdges::isEmpty() const
{
    return m_property.isEmpty() || std::all_of(m_property.begin(), m_property.begin() + sides,
                                               [](int depth) { return depth == 0; });
}

QMargins ReservedEdges::takenFrom(const QRect &screen, const QRect &bar, const QSize &desktop) const
{
    const QRect place = bar & screen;
    if (isEmpty() || place.isEmpty())
        return {};
    const int right = desktop.width() - screen.right() - 1;
    const int bottom = desktop.height() - screen.bottom() - 1;
    return {
        taken(m_property[Left], screen.left(), place.right() + 1 - screen.left(), screen.width()),
        taken(m_property[Top], screen.top(), place.bottom() + 1 - screen.top(), screen.height()),
        taken(m_property[Right], right, screen.right() + 1 - place.left(), screen.width()),
        taken(m_property[Bottom], bottom, screen.bottom() + 1 - place.top(), screen.height())};
}

bool ReservedEdges::cover(const QRect &place, const QSize &desktop) const
{
    if (isEmpty())
        return false;
    const auto first = [this](Side side) {
        return m_property.value(sides + 2 * qsizetype(side), 0);
    };
    const auto last = [this](Side side) {
        return m_property.value(sides + 2 * qsizetype(side) + 1, int(largestNumber));
    };
    const QPoint end(desktop.width() - 1, desktop.height() - 1);
    const std::array strips = {
        QRect(QPoint(0, first(Left)), QPoint(m_property[Left] - 1, last(Left))),
        QRect(QPoint(desktop.width() - m_property[Right], first(Right)),
              QPoint(end.x(), last(Right))),
        QRect(QPoint(first(Top), 0), QPoint(last(Top), m_property[Top] - 1)),
        QRect(QPoint(first(Bottom), desktop.height() - m_property[Bottom]),
              QPoint(last(Bottom), end.y()))};
    return std::any_of(strips.begin(), strips.end(),
                       [&](const QRect &strip) { return strip.intersects(place); });
}
