// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>
#include <set>

/// When a folder is looked at again after its events: three times after each, and no event cancels
/// the looks of one before it. Knows no clock: every call says what time it is.
class RescanTimes
{
public:
    using Time = std::chrono::steady_clock::time_point;

    void eventAt(Time now);

    /// Whether a look is due, which it is once for all that are.
    bool takeDue(Time now);

    /// How long until the next one; nothing when there is none.
    std::optional<std::chrono::milliseconds> next(Time now) const;

private:
    /// To the millisecond, so that a storm of events makes no storm of timers.
    std::set<std::chrono::time_point<std::chrono::steady_clock, std::chrono::milliseconds>> m_times;
};
