// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

/// Reports when the system's clock was set and when the machine wakes up: then the wall clock and
/// the timers have not advanced alike. Costs nothing otherwise. Lives on one thread with an event
/// loop.
class ClockWatch : public QObject
{
    Q_OBJECT
public:
    ClockWatch();
    ~ClockWatch() override;

    bool isWatching() const { return m_isArmed; }

Q_SIGNALS:
    void clockSet();

private:
    bool arm();

    int m_timer;
    bool m_isArmed;
};
