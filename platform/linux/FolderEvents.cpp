// SPDX-License-Identifier: MIT
#include "platform/FolderEvents.h"

#include "platform/linux/folder-events/ClockWatch.h"
#include "platform/linux/folder-events/FileSystemKind.h"
#include "platform/linux/folder-events/InotifyQueue.h"
#include "platform/linux/folder-events/PathWatch.h"

#include <QFile>
#include <QTimer>

#include <cerrno>
#include <chrono>
#include <optional>

#include <sys/inotify.h>
#include <sys/stat.h>

using namespace std::chrono_literals;

namespace
{

constexpr uint32_t presenceMask =
    IN_CREATE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE | IN_DELETE_SELF | IN_MOVE_SELF;
constexpr uint32_t contentMask = IN_MODIFY | IN_CLOSE_WRITE | IN_ATTRIB;

/// Writing a large file causes thousands of content events a second.
constexpr auto pauseBetweenContentReads = 20ms;

/// Entries that come or go are reported at once. Writes come in bursts: they have a queue of their
/// own, read at most once per pause, so that they never delay the others.
class InotifyFolderEvents : public FolderEvents
{
public:
    InotifyFolderEvents()
    {
        m_pause.setSingleShot(true);
        m_pause.setTimerType(Qt::PreciseTimer);
        m_pause.setInterval(pauseBetweenContentReads);
        connect(&m_presence, &InotifyQueue::readable, this, [this] { report(m_presence.read()); });
        connect(&m_content, &InotifyQueue::readable, this, [this] {
            m_content.setListening(false);
            m_pause.start();
            report(m_content.read());
        });
        connect(&m_pause, &QTimer::timeout, this, [this] { m_content.setListening(true); });
    }

    Coverage arm(const QString &folder) override
    {
        disarm();
        const QByteArray path = QFile::encodeName(folder);
        const bool isWatched = m_presence.open(path, presenceMask);
        const bool isContentWatched = isWatched && m_content.open(path, contentMask);
        const bool isWayWatched = watchWayTo(path);
        if (!isWatched)
            return isWayWatched && isNoFolder(path) ? Coverage::Missing : Coverage::Nothing;
        return isWayWatched && isContentWatched && reportsEveryChange(path) ? Coverage::All
                                                                            : Coverage::Some;
    }

    void disarm() override
    {
        m_presence.close();
        m_content.close();
        m_pause.stop();
        m_way.reset();
        m_clock.reset();
    }

private:
    static bool isNoFolder(const QByteArray &path)
    {
        struct stat status = {};
        return ::stat(path.constData(), &status) == 0 ? !S_ISDIR(status.st_mode)
                                                      : errno == ENOENT || errno == ENOTDIR;
    }

    bool watchWayTo(const QByteArray &path)
    {
        m_way.emplace();
        connect(&*m_way, &PathWatch::changed, this, &InotifyFolderEvents::reportGone,
                Qt::QueuedConnection);
        m_clock.emplace();
        connect(&*m_clock, &ClockWatch::clockSet, this, &FolderEvents::listAgain);
        return m_clock->isWatching() && m_way->watch(path, PathWatch::End::Folder);
    }

    void reportGone()
    {
        // One change can have several causes for this report.
        if (!m_way)
            return;
        disarm();
        Q_EMIT folderGone();
    }

    void report(const InotifyQueue::News &news)
    {
        if (news.folderGone) {
            reportGone();
            return;
        }
        if (news.lost)
            Q_EMIT listAgain();
        if (!news.names.isEmpty())
            Q_EMIT entriesChanged(QStringList(news.names.cbegin(), news.names.cend()));
    }

    InotifyQueue m_presence;
    InotifyQueue m_content;
    QTimer m_pause;
    std::optional<PathWatch> m_way;
    std::optional<ClockWatch> m_clock;
};

} // namespace

std::unique_ptr<FolderEvents> makeFolderEvents()
{
    return std::make_unique<InotifyFolderEvents>();
}
