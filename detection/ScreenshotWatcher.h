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

/// Calls its owner once for every image file that appears in a folder after the watcher was
/// created. The folder need not exist. Never fails: a folder that cannot be listed counts as empty,
/// and a folder without events is checked ten times a second, as described in `FolderListing`.
///
/// If another program replaces a file whose callback is still queued, that is not a second new
/// file. A file that is gone when its callback is due is reported once it is back.
///
/// All listing happens on the watcher's own thread, "velmora.screenshot-watcher". Lives on the main
/// thread. Can be started and stopped once; watching another folder takes another watcher.
class ScreenshotWatcher : public QObject
{
    Q_OBJECT
public:
    /// @param folderURL the folder to watch
    /// @param onNewScreenshot called on the main thread with the standardised URL of each new file,
    ///        each time from its own turn of the event loop, so that many new files do not block
    ///        user input; never called once the watcher is destroyed
    /// @param makeFolderEvents called on the watcher's thread
    ScreenshotWatcher(const QUrl &folderURL, std::function<void(const QUrl &)> onNewScreenshot,
                      std::function<std::unique_ptr<FolderEvents>()> makeFolderEvents,
                      QObject *parent = nullptr);
    ~ScreenshotWatcher() override;

    /// Files that exist now are known, except those that arrived at `newSince` or later. Files that
    /// arrive after this returns are new. Waits briefly for the folder's listing, but not for a
    /// large or slow one.
    void start(FileTime newSince = FileTime::max());

    /// Soon after this, no descriptor is open and no tick runs. Rescans that are scheduled and
    /// callbacks that are queued still happen.
    void stop();

    /// The file is never reported from now on, whether or not it exists. That includes a callback
    /// that is already queued, because the folder's event may come before the owner's call. Any
    /// thread.
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
    /// Standardised, as in the scanner.
    QSet<QUrl> m_ignored;
    QQueue<Report> m_reports;
    QBasicTimer m_nextTurn;
    QThread *m_thread;
    ScreenshotScanner *m_scanner;
};
