// SPDX-License-Identifier: MIT
#include "tray/PanelHistory.h"

using namespace std::chrono_literals;

namespace
{

constexpr auto kept = 1min;

} // namespace

QRect PanelPlace::inPicture(QSize pixels) const
{
    for (const QRect &shown : {desktop, screen}) {
        if (pixels == shown.size())
            return panel.intersected(shown).translated(-shown.topLeft());
    }
    return {};
}

void PanelHistory::shown(const PanelPlace &place, FileTime now)
{
    const bool isThere = !m_stays.isEmpty() && !m_stays.last().end;
    if (isThere && m_stays.last().place == place)
        return;
    endStay(now);
    m_stays.append({place, now, std::nullopt});
    forget(now);
}

void PanelHistory::hidden(FileTime now)
{
    endStay(now);
    forget(now);
}

QList<PanelPlace> PanelHistory::between(FileTime from, FileTime to) const
{
    QList<PanelPlace> places;
    for (const Stay &stay : m_stays) {
        if (stay.begin <= to && (!stay.end || *stay.end >= from))
            places.append(stay.place);
    }
    return places;
}

void PanelHistory::endStay(FileTime now)
{
    if (!m_stays.isEmpty() && !m_stays.last().end)
        m_stays.last().end = now;
}

void PanelHistory::forget(FileTime now)
{
    m_stays.removeIf([now](const Stay &stay) { return stay.end && *stay.end < now - kept; });
}
