// SPDX-License-Identifier: MIT
#pragma once

#include "command/Console.h"

#include <chrono>

/// The progress bar at the bottom of a terminal: how many are done, how many a second, and how long
/// the others will take.
class Progress
{
public:
    using Clock = std::chrono::steady_clock;

    Progress(Console &console, qsizetype total);
    ~Progress();
    Q_DISABLE_COPY_MOVE(Progress)

    /// Shows the state as it is now, not more often than an eye can follow.
    void show(qsizetype done);

    /// The line that is shown.
    static QByteArray line(qsizetype done, qsizetype total, std::chrono::duration<double> since,
                           int width);

private:
    Console &m_console;
    qsizetype m_total;
    Clock::time_point m_start = Clock::now();
    Clock::time_point m_shown = Clock::time_point::min();
};
