// SPDX-License-Identifier: MIT
#pragma once

#include "command/Console.h"

#include <chrono>

/// The progress bar at the bottom of a terminal: how many pictures are done, how many per second,
/// and how long the rest will take.
class Progress
{
public:
    using Clock = std::chrono::steady_clock;

    Progress(Console &console, qsizetype total);
    ~Progress();
    Q_DISABLE_COPY_MOVE(Progress)

    /// Updates the bar, but not more often than is visible.
    void show(qsizetype done);

    /// The text of the bar for a terminal of this width.
    static QByteArray line(qsizetype done, qsizetype total, std::chrono::duration<double> since,
                           int width);

private:
    Console &m_console;
    qsizetype m_total;
    Clock::time_point m_start = Clock::now();
    Clock::time_point m_shown = Clock::time_point::min();
};
