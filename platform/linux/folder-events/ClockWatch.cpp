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

ClockWatch::ClockWatch()
    : m_timer(::timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC)), m_isArmed(arm())
{
    if (m_timer < 0)
        return;
    auto *notifier = new QSocketNotifier(m_timer, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this] {
        uint64_t expirations = 0;
        const bool wasSet =
            ::read(m_timer, &expirations, sizeof expirations) < 0 && errno == ECANCELED;
        m_isArmed = arm();
        if (wasSet)
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
    const itimerspec never = {{0, 0}, {farFuture, 0}};
    return m_timer >= 0 && ::timerfd_settime(m_timer, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET,
                                             &never, nullptr) == 0;
}
