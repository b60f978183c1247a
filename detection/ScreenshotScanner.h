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

/// The part of a ScreenshotWatcher that runs on its thread. It scans the folder when an event
/// reports a change, three times shortly after, and ten times a second. Where events report every
/// change, a scan without an event would find nothing, so the tick stops there, and a timer runs
/// only for the next candidate that becomes too old.
///
/// May be created on another thread and moved: the constructor and `ignore` access no file.
class ScreenshotScanner : public QObject
{
    Q_OBJECT
public:
    using MakeFolderEvents = std::function<std::unique_ptr<FolderEvents>()>;

    ScreenshotScanner(const QUrl &folder, FileTime startedAt, MakeFolderEvents makeFolderEvents);
    ~ScreenshotScanner() override;

    /// Takes a snapshot of the known files and starts to scan.
    /// @param newSince files in the snapshot that arrived at this time or later are new
    /// @param startedLate if it is set once the snapshot is taken, files that arrived since
    ///        `calledAt` are new, too, because the caller did not wait for the snapshot
    void start(FileTime newSince, FileTime calledAt, const std::atomic_bool &startedLate);

    /// Stops the events and the tick. Rescans that are scheduled still happen.
    void stop();

    void ignore(const QUrl &url) { m_newScreenshots.ignore(url); }

    /// The file no longer existed when its report `number` arrived. If that was its last report, it
    /// is reported again once it is back.
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
