// SPDX-License-Identifier: MIT
#pragma once

#include "detection/FolderFollower.h"
#include "detection/NewScreenshots.h"
#include "detection/RescanTimes.h"

#include <QObject>
#include <QTimer>

#include <atomic>
#include <functional>
#include <memory>
#include <optional>

/// What a ScreenshotWatcher does on its own thread: it scans the folder when its events tell of a
/// change, three times shortly after, and ten times a second. Where its events tell of everything,
/// a scan that follows no event would find nothing: there the tick stands still, and only a
/// candidate that gets too old has a timer.
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
    /// @param newSince the snapshot's files that came at this moment or later are new
    /// @param startedLate whether, after the snapshot, those that came since `calledAt` are new
    ///                    too, since nobody waited for it
    void start(FileTime newSince, FileTime calledAt, const std::atomic_bool &startedLate);

    /// Ends the events and the ticks. Rescans that are under way still happen.
    void stop();

    void ignore(const QUrl &url) { m_newScreenshots.ignore(url); }

    /// The file was gone when its report `number` arrived. It is reported again if it is back and
    /// that was its last report.
    void missed(const QUrl &url, int number);

Q_SIGNALS:
    void newScreenshot(const QUrl &url, int number);

private:
    void scan();
    void scanAndScheduleRescans();
    void runDueRescans();
    void startRescanTimer();
    void startTickOrAgeing();

    QUrl m_folder;
    MakeFolderEvents m_makeFolderEvents;
    NewScreenshots m_newScreenshots;
    std::optional<FolderFollower> m_follower;
    bool m_hasScanned = false;
    int m_reports = 0;
    QHash<QUrl, int> m_lastReports;
    QTimer m_tick;
    QTimer m_ageing;
    QTimer m_rescanTimer;
    RescanTimes m_rescans;
    bool m_isStopped = false;
};
