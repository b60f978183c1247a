#pragma once

#include "detection/FolderFollower.h"
#include "detection/NewScreenshots.h"

#include <QObject>
#include <QTimer>

#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <set>

/// What a ScreenshotWatcher does on its own thread: it scans the folder when its events tell of a
/// change, three times shortly after, and ten times a second.
///
/// May be made on another thread and moved; the constructor and `ignore` touch no file.
class ScreenshotScanner : public QObject
{
    Q_OBJECT
public:
    using MakeFolderEvents = std::function<std::unique_ptr<FolderEvents>()>;

    ScreenshotScanner(const QUrl &folder, FileTime startedAt, MakeFolderEvents makeFolderEvents);
    ~ScreenshotScanner() override;

    /// Takes the snapshot of what is known and begins to scan.
    /// @param startedLate whether, after the snapshot, its files that came since `calledAt` are
    ///                    new instead of known, since nobody waited for it
    void start(FileTime calledAt, const std::atomic_bool &startedLate);

    /// Ends the events and the ticks. Rescans that are under way still happen.
    void stop();

    void ignore(const QUrl &url) { m_newScreenshots.ignore(url); }

Q_SIGNALS:
    void newScreenshot(const QUrl &url);

private:
    using Clock = std::chrono::steady_clock;
    using Moment = std::chrono::time_point<Clock, std::chrono::milliseconds>;

    void scan();
    void scanAndScheduleRescans();
    void runDueRescans();
    void startRescanTimer();

    QUrl m_folder;
    MakeFolderEvents m_makeFolderEvents;
    NewScreenshots m_newScreenshots;
    std::optional<FolderFollower> m_follower;
    bool m_hasScanned = false;
    QTimer m_tick;
    QTimer m_rescanTimer;
    std::set<Moment> m_rescans;
};
