// SPDX-License-Identifier: MIT
#include "command/Progress.h"

#include <algorithm>

using namespace std::chrono_literals;

namespace
{

constexpr auto timeBetweenLines = 100ms;
/// The bar's length in characters. If there is no room for the shorter one, there is no bar.
constexpr int longestBar = 40;
constexpr int shortestBar = 8;

QByteArray twoDigits(qint64 number)
{
    return QByteArray::number(number).rightJustified(2, '0');
}

/// "0:42", "12:05", "1:02:03".
QByteArray clockText(double seconds)
{
    const auto whole = qint64(std::min(seconds + 0.5, 359'999.0));
    const qint64 minutes = whole / 60;
    const QByteArray ending = ':' + twoDigits(whole % 60);
    if (minutes < 60)
        return QByteArray::number(minutes) + ending;
    return QByteArray::number(minutes / 60) + ':' + twoDigits(minutes % 60) + ending;
}

QByteArray bar(double share, int length)
{
    const int filled = int(share * length);
    return '[' + QByteArray(filled, '#') + QByteArray(length - filled, '.') + "] ";
}

} // namespace

Progress::Progress(Console &console, qsizetype total) : m_console(console), m_total(total)
{
    show(0);
}

Progress::~Progress()
{
    m_console.setStatusLine({});
}

void Progress::show(qsizetype done)
{
    const Clock::time_point now = Clock::now();
    const bool isShown = m_shown != Clock::time_point::min();
    if (!m_console.isTerminal() || (isShown && now - m_shown < timeBetweenLines))
        return;
    m_shown = now;
    m_console.setStatusLine(line(done, m_total, now - m_start, m_console.width()));
}

QByteArray Progress::line(qsizetype done, qsizetype total, std::chrono::duration<double> since,
                          int width)
{
    QByteArray text = QByteArray::number(done) + " of " + QByteArray::number(total);
    if (done > 0 && since > 0s) {
        const double rate = double(done) / since.count();
        text += ", " + QByteArray::number(rate, 'f', rate < 10 ? 1 : 0) + "/s, " +
                clockText(double(total - done) / rate) + " left";
    }
    // The last column stays free, because some terminals wrap when it is written.
    const int room = width - 1 - int(text.size()) - int(qstrlen("[] "));
    const double share = total > 0 ? double(done) / double(total) : 1;
    if (room >= shortestBar)
        text.prepend(bar(share, std::min(room, longestBar)));
    return text.left(std::max(0, width - 1));
}
