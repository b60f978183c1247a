// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>

/// Tells when the system's clock was set, and when the machine wakes up: moments at which the wall
/// clock has not gone on as timers have. Costs nothing while the clock goes on. Lives on one thread
/// with an event loop.
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
