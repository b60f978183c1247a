// SPDX-License-Identifier: MIT
#include "platform/linux/folder-events/ClockWatch.h"

#include <QSocketNotifier>

#include <cerrno>
#include <cstdint>

#include <sys/timerfd.h>
#include <unistd.h>

namespace
{

/// In the year 2200; the system's own count ends in 2262.
constexpr time_t farFuture = 7'258'118'400;

} // namespace

ClockWatch::ClockWatch(std::function<std::time_t()> nextTime)
    : m_nextTime(std::move(nextTime))
    , m_timer(::timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC))
    , m_isArmed(arm())
{
    if (m_timer < 0)
        return;
    auto *notifier = new QSocketNotifier(m_timer, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        uint64_t expirations = 0;
        const bool hasReached = ::read(m_timer, &expirations, sizeof expirations) > 0;
        const bool wasSet = !hasReached && errno == ECANCELED;
        m_isArmed = arm();
        if (hasReached)
            Q_EMIT timeReached();
        else if (wasSet)
            Q_EMIT clockSet();
    });
}

ClockWatch::~ClockWatch()
{
    qDeleteAll(findChildren<QSocketNotifier *>());
    if (m_timer >= 0)
        ::close(m_timer);
}

/// The system cancels a timer on the wall clock when that clock jumps.
bool ClockWatch::arm()
{
    const itimerspec next = {{0, 0}, {m_nextTime ? m_nextTime() : farFuture, 0}};
    return m_timer >= 0 && ::timerfd_settime(m_timer, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET,
                                             &next, nullptr) == 0;
}
