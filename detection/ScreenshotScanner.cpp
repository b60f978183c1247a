// SPDX-License-Identifier: MIT
#include "detection/ScreenshotScanner.h"

#include "filesystem/RenameJournal.h"

#include <algorithm>
#include <utility>

using namespace std::chrono_literals;

namespace
{

constexpr auto tickInterval = 100ms;

/// For files dated far in the future.
constexpr std::chrono::milliseconds longestTimer = 24h;

RescanTimes::Time steadyNow()
{
    return std::chrono::steady_clock::now();
}

} // namespace

ScreenshotScanner::ScreenshotScanner(const QUrl &folder, FileTime startedAt,
                                     MakeFolderEvents makeFolderEvents)
    : m_folder(folder)
    , m_makeFolderEvents(std::move(makeFolderEvents))
    , m_newScreenshots(startedAt)
    , m_tick(this)
    , m_ageing(this)
    , m_rescanTimer(this)
{
    m_tick.setTimerType(Qt::PreciseTimer);
    m_tick.setInterval(tickInterval);
    m_ageing.setTimerType(Qt::PreciseTimer);
    m_ageing.setSingleShot(true);
    m_rescanTimer.setTimerType(Qt::PreciseTimer);
    m_rescanTimer.setSingleShot(true);
    connect(&m_tick, &QTimer::timeout, this, [this] { scan(); });
    connect(&m_ageing, &QTimer::timeout, this, [this] { scan(); });
    connect(&m_rescanTimer, &QTimer::timeout, this, [this] { runDueRescans(); });
}

ScreenshotScanner::~ScreenshotScanner() = default;

void ScreenshotScanner::start(FileTime newSince, FileTime calledAt,
                              const std::atomic_bool &startedLate)
{
    m_follower.emplace(m_folder, m_makeFolderEvents());
    m_follower->look(FileTimes::now());
    m_newScreenshots.start(m_follower->candidates(),
                           startedLate ? std::min(newSince, calledAt) : newSince);
    connect(&*m_follower, &FolderFollower::changed, this, [this] { scanAndScheduleRescans(); });
    // Files in the snapshot that count as new cause no further event.
    scan();
}

void ScreenshotScanner::stop()
{
    m_isStopped = true;
    m_tick.stop();
    m_ageing.stop();
    if (m_follower)
        m_follower->release();
}

void ScreenshotScanner::scan()
{
    // Unchanged candidates contain nothing new.
    const FileTime now = FileTimes::now();
    m_newScreenshots.noteTime(now);
    const bool altered = m_follower->look(now);
    startTickOrAgeing();
    if (!altered && m_hasScanned)
        return;
    m_hasScanned = true;
    const QList<QUrl> added = m_newScreenshots.scan(m_follower->candidates());
    for (const QUrl &url : added) {
        const std::optional<FileIdentity> file = fileIdentity(url.toLocalFile());
        // Only its name is new.
        if (file && RenameJournal::hasRenamed(*file))
            continue;
        m_lastReports.insert(url, ++m_reports);
        Q_EMIT newScreenshot(url, m_reports);
    }
}

void ScreenshotScanner::missed(const QUrl &url, int number)
{
    if (m_lastReports.value(url) != number)
        return;
    m_newScreenshots.forget(url);
    m_hasScanned = false;
    scan();
}

void ScreenshotScanner::scanAndScheduleRescans()
{
    scan();
    m_rescans.eventAt(steadyNow());
    startRescanTimer();
}

void ScreenshotScanner::runDueRescans()
{
    if (m_rescans.takeDue(steadyNow()))
        scan();
    startRescanTimer();
}

void ScreenshotScanner::startRescanTimer()
{
    if (const auto rest = m_rescans.next(steadyNow()))
        m_rescanTimer.start(*rest);
}

void ScreenshotScanner::startTickOrAgeing()
{
    if (m_isStopped)
        return;
    if (m_follower->hasUnreported()) {
        m_ageing.stop();
        if (!m_tick.isActive())
            m_tick.start();
        return;
    }
    m_tick.stop();
    if (m_follower->nextAgeing() == FileTime::max()) {
        m_ageing.stop();
        return;
    }
    const auto rest =
        std::chrono::ceil<std::chrono::milliseconds>(m_follower->nextAgeing() - FileTimes::now());
    m_ageing.start(std::clamp(rest, 0ms, longestTimer));
}
