#include "detection/ScreenshotScanner.h"

#include <array>
#include <utility>

using namespace std::chrono_literals;

namespace
{

constexpr auto tickInterval = 100ms;
constexpr std::array rescanDelays = {30ms, 120ms, 300ms};

} // namespace

ScreenshotScanner::ScreenshotScanner(const QUrl &folder, FileTime startedAt,
                                     MakeFolderEvents makeFolderEvents)
    : m_folder(folder)
    , m_makeFolderEvents(std::move(makeFolderEvents))
    , m_newScreenshots(startedAt)
    , m_tick(this)
    , m_rescanTimer(this)
{
    m_tick.setTimerType(Qt::PreciseTimer);
    m_tick.setInterval(tickInterval);
    m_rescanTimer.setTimerType(Qt::PreciseTimer);
    m_rescanTimer.setSingleShot(true);
    connect(&m_tick, &QTimer::timeout, this, [this] { scan(); });
    connect(&m_rescanTimer, &QTimer::timeout, this, [this] { runDueRescans(); });
}

ScreenshotScanner::~ScreenshotScanner() = default;

void ScreenshotScanner::start(FileTime calledAt, const std::atomic_bool &startedLate)
{
    m_follower.emplace(m_folder, m_makeFolderEvents());
    m_follower->look(FileTimes::now());
    m_newScreenshots.start(m_follower->candidates(), startedLate ? calledAt : FileTime::max());
    connect(&*m_follower, &FolderFollower::stirred, this, [this] { scanAndScheduleRescans(); });
    m_tick.start();
}

void ScreenshotScanner::stop()
{
    m_tick.stop();
    if (m_follower)
        m_follower->release();
}

void ScreenshotScanner::scan()
{
    // The same candidates as at the last scan hold nothing new.
    const bool altered = m_follower->look(FileTimes::now());
    if (!altered && m_hasScanned)
        return;
    m_hasScanned = true;
    const QList<QUrl> added = m_newScreenshots.scan(m_follower->candidates());
    for (const QUrl &url : added)
        Q_EMIT newScreenshot(url);
}

void ScreenshotScanner::scanAndScheduleRescans()
{
    scan();
    // To the millisecond, so that a storm of events makes no storm of timers.
    const auto now = std::chrono::ceil<std::chrono::milliseconds>(Clock::now());
    for (const auto delay : rescanDelays)
        m_rescans.insert(now + delay);
    startRescanTimer();
}

void ScreenshotScanner::runDueRescans()
{
    const auto due =
        m_rescans.upper_bound(std::chrono::floor<std::chrono::milliseconds>(Clock::now()));
    const bool isDue = due != m_rescans.begin();
    m_rescans.erase(m_rescans.begin(), due);
    if (isDue)
        scan();
    startRescanTimer();
}

void ScreenshotScanner::startRescanTimer()
{
    if (m_rescans.empty())
        return;
    const auto rest =
        std::chrono::ceil<std::chrono::milliseconds>(*m_rescans.begin() - Clock::now());
    m_rescanTimer.start(std::max(rest, 0ms));
}
