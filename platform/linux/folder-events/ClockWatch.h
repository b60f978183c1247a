// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

#include <ctime>
#include <functional>

/// Reports when the system's clock was set and when the machine wakes up: then the wall clock and
/// the timers have not advanced alike. Also reports when the clock reaches a given time. Costs
/// nothing otherwise. Lives on one thread with an event loop.
class ClockWatch : public QObject
{
    Q_OBJECT
public:
    /// @param nextTime  the next time to report, in seconds since 1970; asked again after each
    ///                  signal. Without it, no time is reported.
    explicit ClockWatch(std::function<std::time_t()> nextTime = {});
    ~ClockWatch() override;

    bool isWatching() const { return m_isArmed; }

Q_SIGNALS:
    void clockSet();
    void timeReached();

private:
    bool arm();

    const std::function<std::time_t()> m_nextTime;
    int m_timer;
    bool m_isArmed;
};
