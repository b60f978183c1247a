// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/FileTime.h"
#include "platform/FolderEvents.h"

#include <QBasicTimer>
#include <QMutex>
#include <QObject>
#include <QQueue>
#include <QSet>
#include <QUrl>

#include <functional>
#include <memory>

class QThread;
class ScreenshotScanner;

/// Calls its owner once for every image file that newly appears in one folder after the watcher
/// was made. The folder need not exist. Never fails: a folder that can't be listed holds nothing;
/// one without events is looked at ten times a second, as `FolderListing` says.
///
/// A file that another program puts in the place of one whose call is queued is no second file; one
/// that is gone when its call is due is reported when it is back.
///
/// All listing happens on a thread of its own, "velmora.screenshot-watcher". Lives on the main
/// thread. Started and stopped once; another folder takes another watcher.
class ScreenshotWatcher : public QObject
{
    Q_OBJECT
public:
    /// @param folderURL the watched folder, fixed
    /// @param onNewScreenshot called on the main thread with each new file's standardised URL, each
    ///        call in a turn of the event loop of its own, so that many at once don't hold up what
    ///        the user does; never after the watcher is gone
    /// @param makeFolderEvents called on the watcher's thread
    ScreenshotWatcher(const QUrl &folderURL, std::function<void(const QUrl &)> onNewScreenshot,
                      std::function<std::unique_ptr<FolderEvents>()> makeFolderEvents,
                      QObject *parent = nullptr);
    ~ScreenshotWatcher() override;

    /// The files that are there now are known, but for those that came at `newSince` or later; what
    /// comes after the return is new. Waits a moment for the listing of the folder, but not for a
    /// large or slow one.
    void start(FileTime newSince = FileTime::max());

    /// Soon after, no descriptor is open and no tick comes. A rescan that is under way and calls
    /// that are queued still happen.
    void stop();

    /// The file is never reported from now on, whether or not it exists: also not by a call that
    /// is queued already, since the folder may have told of it before the owner could. Any thread.
    void ignore(const QUrl &url);

private:
    struct Report {
        QUrl url;
        int number;
    };

    void report(const QUrl &url, int number);
    void timerEvent(QTimerEvent *event) override;
    bool isIgnored(const QUrl &url);

    std::function<void(const QUrl &)> m_onNewScreenshot;
    QMutex m_ignoredLock;
    /// Standardised, as the scanner keeps them too.
    QSet<QUrl> m_ignored;
    QQueue<Report> m_reports;
    QBasicTimer m_nextTurn;
    QThread *m_thread;
    ScreenshotScanner *m_scanner;
};
