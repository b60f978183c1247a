// SPDX-License-Identifier: MIT
#include "detection/RescanTimes.h"

#include <algorithm>
#include <array>

using namespace std::chrono_literals;
using std::chrono::milliseconds;

namespace
{

constexpr std::array delays = {30ms, 120ms, 300ms};

} // namespace

void RescanTimes::eventAt(Time now)
{
    for (const milliseconds delay : delays)
        m_times.insert(std::chrono::ceil<milliseconds>(now) + delay);
}

bool RescanTimes::takeDue(Time now)
{
    const auto due = m_times.upper_bound(std::chrono::floor<milliseconds>(now));
    const bool isDue = due != m_times.begin();
    m_times.erase(m_times.begin(), due);
    return isDue;
}

std::optional<milliseconds> RescanTimes::next(Time now) const
{
    if (m_times.empty())
        return std::nullopt;
    return std::max(std::chrono::ceil<milliseconds>(*m_times.begin() - now), 0ms);
}
