// SPDX-License-Identifier: MIT
#include "detection/ScreenshotWatcher.h"

#include "core/VelmoraLog.h"
#include "detection/ScreenshotScanner.h"
#include "filesystem/FileUrls.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QFile>
#include <QPointer>
#include <QSemaphore>
#include <QThread>

#include <algorithm>

#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

/// About one frame: long enough to list thousands of files.
constexpr auto longestWaitForSnapshot = 20ms;

/// Listing a dead network mount may never return; the program then exits without this thread.
constexpr auto longestWaitForThread = 1s;

/// A thread that ends on its own, and with it its worker. The application waits for it at exit,
/// because a thread must not outlive what Qt destroys then.
class LeftThread : public QObject
{
public:
    LeftThread(QThread *thread, QObject *worker)
        : QObject(QCoreApplication::instance()), m_thread(thread), m_worker(worker)
    {
        connect(thread, &QThread::finished, this, &QObject::deleteLater);
    }
    ~LeftThread() override
    {
        if (!m_thread->wait(QDeadlineTimer(longestWaitForThread)))
            return;
        // A thread that ends while the application is being destroyed can't delete it.
        delete m_worker;
        delete m_thread;
    }
    Q_DISABLE_COPY_MOVE(LeftThread)

private:
    QThread *m_thread;
    QPointer<QObject> m_worker;
};

/// True also for a dangling symbolic link.
bool stands(const QUrl &url)
{
    struct stat status = {};
    return ::lstat(QFile::encodeName(url.toLocalFile()).constData(), &status) == 0;
}

/// Shared between start() and the snapshot.
struct Start {
    QSemaphore done;
    std::atomic_bool late = false;
};

} // namespace

ScreenshotWatcher::ScreenshotWatcher(
    const QUrl &folderURL, std::function<void(const QUrl &)> onNewScreenshot,
    std::function<std::unique_ptr<FolderEvents>()> makeFolderEvents, QObject *parent)
    : QObject(parent)
    , m_onNewScreenshot(std::move(onNewScreenshot))
    , m_thread(new QThread)
    , m_scanner(new ScreenshotScanner(folderURL, FileTimes::now(), std::move(makeFolderEvents)))
{
    m_thread->setObjectName(u"velmora.screenshot-watcher"_s);
    m_scanner->moveToThread(m_thread);
    connect(m_thread, &QThread::finished, m_scanner, &QObject::deleteLater);
    connect(m_scanner, &ScreenshotScanner::newScreenshot, this, &ScreenshotWatcher::report,
            Qt::QueuedConnection);
}

ScreenshotWatcher::~ScreenshotWatcher()
{
    if (!m_thread->isRunning()) {
        delete m_scanner;
        delete m_thread;
        return;
    }
    new LeftThread(m_thread, m_scanner);
    // From here on, the thread may delete the scanner.
    m_thread->quit();
}

void ScreenshotWatcher::start(FileTime newSince)
{
    VelmoraLog::write(u"watcher start"_s);
    const FileTime now = FileTimes::now();
    const auto start = std::make_shared<Start>();
    QMetaObject::invokeMethod(
        m_scanner,
        [scanner = m_scanner, newSince, now, start] {
            scanner->start(newSince, now, start->late);
            start->done.release();
        },
        Qt::QueuedConnection);
    m_thread->start();
    start->late = !start->done.tryAcquire(1, static_cast<int>(longestWaitForSnapshot.count()));
}

void ScreenshotWatcher::stop()
{
    QMetaObject::invokeMethod(
        m_scanner, [scanner = m_scanner] { scanner->stop(); }, Qt::QueuedConnection);
}

void ScreenshotWatcher::ignore(const QUrl &url)
{
    {
        const QMutexLocker locker(&m_ignoredLock);
        m_ignored.insert(FileUrls::standardized(url));
    }
    QMetaObject::invokeMethod(
        m_scanner, [scanner = m_scanner, url] { scanner->ignore(url); }, Qt::QueuedConnection);
}

void ScreenshotWatcher::report(const QUrl &url, int number)
{
    const auto queued = std::find_if(m_reports.begin(), m_reports.end(),
                                     [&url](const Report &other) { return other.url == url; });
    if (queued == m_reports.end())
        m_reports.enqueue({url, number});
    else
        queued->number = number;
    m_nextTurn.start(0, this);
}

void ScreenshotWatcher::timerEvent(QTimerEvent *)
{
    const auto [url, number] = m_reports.dequeue();
    if (m_reports.isEmpty())
        m_nextTurn.stop();
    if (isIgnored(url))
        return;
    if (!stands(url)) {
        QMetaObject::invokeMethod(
            m_scanner,
            [scanner = m_scanner, missed = url, report = number] {
                scanner->missed(missed, report);
            },
            Qt::QueuedConnection);
        return;
    }
    // A copy, since the callback may destroy the watcher.
    const auto callback = m_onNewScreenshot;
    callback(url);
}

bool ScreenshotWatcher::isIgnored(const QUrl &url)
{
    const QMutexLocker locker(&m_ignoredLock);
    return m_ignored.contains(url);
}
