// SPDX-License-Identifier: MIT
#include "platform/linux/folder-events/PathWatch.h"

#include "platform/linux/folder-events/FileSystemKind.h"

#include <QList>
#include <QSocketNotifier>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstring>
#include <utility>

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr uint32_t entryMask = IN_CREATE | IN_MOVED_TO | IN_MOVED_FROM | IN_DELETE;
constexpr uint32_t folderMask = IN_DELETE_SELF | IN_MOVE_SELF | IN_ONLYDIR | IN_MASK_ADD;
constexpr uint32_t alwaysReported = IN_DELETE_SELF | IN_MOVE_SELF | IN_UNMOUNT | IN_Q_OVERFLOW;
constexpr int mostLinks = 40;
constexpr size_t bufferSize = 4096;

/// Limits how long a burst of events keeps the thread from its other work.
constexpr int readsInARow = 16;

QByteArray child(const QByteArray &folder, const QByteArray &name)
{
    return folder == "/" ? QByteArray('/' + name) : QByteArray(folder + '/' + name);
}

QByteArray folderAbove(const QByteArray &folder)
{
    return folder.left(std::max<qsizetype>(folder.lastIndexOf('/'), 1));
}

QByteArray targetOf(const QByteArray &link)
{
    std::array<char, PATH_MAX> target;
    const ssize_t size = ::readlink(link.constData(), target.data(), target.size());
    return size > 0 ? QByteArray(target.data(), size) : QByteArray();
}

} // namespace

PathWatch::PathWatch() : m_events(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
{
    if (m_events >= 0) {
        auto *notifier = new QSocketNotifier(m_events, QSocketNotifier::Read, this);
        connect(notifier, &QSocketNotifier::activated, this, &PathWatch::read);
    }
    connect(&m_mountTable, &MountTable::changed, this, &PathWatch::compareMounts);
}

PathWatch::~PathWatch()
{
    qDeleteAll(findChildren<QSocketNotifier *>());
    if (m_events >= 0)
        ::close(m_events);
}

bool PathWatch::watch(const QByteArray &path, End end)
{
    if (m_events < 0 || !m_mountTable.isOpen() || !path.startsWith('/'))
        return false;
    // What is mounted from here on is noticed as a difference.
    return watchWay(path, end, m_mountTable.read());
}

bool PathWatch::watchWay(const QByteArray &path, End end, const MountTable::Mounts &mounts)
{
    noteMounts("/", mounts);
    QByteArray folder = "/";
    QList<QByteArray> rest = path.split('/');
    rest.removeAll(QByteArray());
    int links = 0;
    bool isReported = true;
    while (!rest.isEmpty()) {
        const QByteArray name = rest.takeFirst();
        if (name == "..")
            folder = folderAbove(folder);
        if (name == "." || name == "..")
            continue;
        // The watch comes before the look, so that nothing is missed in between.
        if (!watchEntry(folder, name, rest.isEmpty() ? Place::AtTheEnd : Place::OnTheWay, end))
            return false;
        isReported = isReported && reportsEveryChange(folder);
        const QByteArray entry = child(folder, name);
        noteMounts(entry, mounts);
        struct stat status = {};
        if (::lstat(entry.constData(), &status) != 0)
            return isReported && errno == ENOENT;
        if (!S_ISLNK(status.st_mode)) {
            folder = entry;
            continue;
        }
        const QByteArray target = targetOf(entry);
        if (target.isEmpty() || ++links > mostLinks)
            return false;
        if (target.startsWith('/'))
            folder = "/";
        rest = target.split('/') + rest;
        rest.removeAll(QByteArray());
    }
    return isReported;
}

void PathWatch::noteMounts(const QByteArray &entry, const MountTable::Mounts &mounts)
{
    const QMutexLocker locker(&m_lock);
    // What is known of it from another path may be older, and is yet to be compared.
    if (!m_mounts.contains(entry))
        m_mounts.insert(entry, mounts.value(entry));
}

bool PathWatch::watchEntry(const QByteArray &folder, const QByteArray &name, Place place, End end)
{
    const uint32_t contentMask = end == End::File ? IN_CLOSE_WRITE : 0;
    const int watch = ::inotify_add_watch(m_events, folder.constData(),
                                          entryMask | folderMask |
                                              (place == Place::OnTheWay ? IN_ATTRIB : contentMask));
    if (watch < 0)
        return false;
    const QMutexLocker locker(&m_lock);
    QHash<QByteArray, Place> &names = m_names[watch];
    names.insert(name, std::min(place, names.value(name, place)));
    return true;
}

void PathWatch::compareMounts()
{
    bool isConcerned = false;
    {
        const QMutexLocker locker(&m_lock);
        const MountTable::Mounts now = m_mountTable.read();
        for (auto [entry, mounts] : m_mounts.asKeyValueRange()) {
            const QByteArrayList known = std::exchange(mounts, now.value(entry));
            isConcerned = isConcerned || mounts != known;
        }
    }
    if (isConcerned)
        Q_EMIT changed();
}

void PathWatch::read()
{
    std::array<char, bufferSize> buffer;
    bool isConcerned = false;
    for (int i = 0; i < readsInARow; ++i) {
        const ssize_t size = ::read(m_events, buffer.data(), buffer.size());
        if (size <= 0)
            break;
        const QMutexLocker locker(&m_lock);
        for (const char *at = buffer.data(); at < buffer.data() + size;) {
            inotify_event event;
            std::memcpy(&event, at, sizeof event);
            at += sizeof event;
            isConcerned = concerns(event, event.len > 0 ? at : "") || isConcerned;
            at += event.len;
        }
    }
    if (isConcerned)
        Q_EMIT changed();
}

bool PathWatch::concerns(const inotify_event &event, const char *name)
{
    if (event.mask & IN_IGNORED) {
        m_names.remove(event.wd);
        return true;
    }
    // An event may be read before the names of its watch are known.
    const auto names = m_names.constFind(event.wd);
    if ((event.mask & alwaysReported) || names == m_names.cend())
        return true;
    const auto entry = names->constFind(QByteArray::fromRawData(name, qsizetype(qstrlen(name))));
    return entry != names->cend() && (event.mask != IN_ATTRIB || *entry == Place::OnTheWay);
}
