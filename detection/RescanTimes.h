// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>
#include <optional>
#include <set>

/// When to rescan a folder after its events: three times after each event. A later event does not
/// cancel the rescans of an earlier one. Has no clock: every call passes the time.
class RescanTimes
{
public:
    using Time = std::chrono::steady_clock::time_point;

    void eventAt(Time now);

    /// Whether a rescan is due. All rescans that are due count as one.
    bool takeDue(Time now);

    /// The time until the next rescan; nothing if there is none.
    std::optional<std::chrono::milliseconds> next(Time now) const;

private:
    /// Rounded to milliseconds, so that a storm of events does not make a storm of timers.
    std::set<std::chrono::time_point<std::chrono::steady_clock, std::chrono::milliseconds>> m_times;
};
