// SPDX-License-Identifier: MIT
#pragma once

#include "platform/TextRecognizer.h"

#include <QSemaphore>
#include <QStringList>

#include <algorithm>
#include <atomic>
#include <mutex>

/// Finds the lines in a picture that the test chooses, when the test lets it, and records what it
/// was asked to read.
class FakeTextRecognizer : public TextRecognizer
{
public:
    /// Called on the recognising thread.
    using Lines = std::function<QStringList(const QImage &picture)>;

    struct Reading {
        int width;
        QList<QRect> leftOut;
    };

    explicit FakeTextRecognizer(Lines linesOf = {}) : m_linesOf(std::move(linesOf)) {}

    void recognize(const Page &page, const LineHandler &onLine, const Cancelled &cancelled) override
    {
        const int running = ++m_running;
        Lines linesOf;
        {
            const std::lock_guard lock(m_mutex);
            m_readings.append({page.image.width(), page.leftOut});
            m_mostAtOnce = std::max(m_mostAtOnce, running);
            linesOf = m_linesOf;
        }
        ++begun;
        while (m_isHeld && !cancelled() && !m_permits.tryAcquire(1, 5)) {
        }
        if (cancelled())
            ++abandoned;
        else if (linesOf && !page.image.isNull())
            give(linesOf(page.image), onLine, cancelled);
        --m_running;
    }

    void warmUp() override { isWarm = true; }

    /// The lines in each picture from now on.
    void setLines(const QStringList &lines)
    {
        const std::lock_guard lock(m_mutex);
        m_linesOf = [lines](const QImage &) { return lines; };
    }

    /// From now on, each reading waits until it is allowed.
    void hold() { m_isHeld = true; }
    void letOneRead() { m_permits.release(); }
    void letRead() { m_isHeld = false; }

    QList<Reading> readings() const
    {
        const std::lock_guard lock(m_mutex);
        return m_readings;
    }
    int mostAtOnce() const
    {
        const std::lock_guard lock(m_mutex);
        return m_mostAtOnce;
    }
    int running() const { return m_running; }

    std::atomic_bool isWarm = false;
    std::atomic_int begun = 0;
    std::atomic_int abandoned = 0;
    std::atomic_int linesGiven = 0;

private:
    void give(const QStringList &lines, const LineHandler &onLine, const Cancelled &cancelled)
    {
        for (const QString &line : lines) {
            ++linesGiven;
            if (cancelled() || !onLine(line))
                break;
        }
    }

    std::atomic_bool m_isHeld = false;
    QSemaphore m_permits;
    std::atomic_int m_running = 0;
    mutable std::mutex m_mutex;
    Lines m_linesOf;
    QList<Reading> m_readings;
    int m_mostAtOnce = 0;
};
