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

PathWatch::PathWatch()
    : m_events(::inotify_init1(IN_NONBLOCK | IN_CLOEXEC))
    , m_mounts(::open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC))
{
    if (m_events >= 0) {
        auto *notifier = new QSocketNotifier(m_events, QSocketNotifier::Read, this);
        connect(notifier, &QSocketNotifier::activated, this, &PathWatch::read);
    }
    if (m_mounts >= 0) {
        auto *notifier = new QSocketNotifier(m_mounts, QSocketNotifier::Exception, this);
        connect(notifier, &QSocketNotifier::activated, this, &PathWatch::changed);
    }
}

PathWatch::~PathWatch()
{
    qDeleteAll(findChildren<QSocketNotifier *>());
    for (const int descriptor : {m_events, m_mounts}) {
        if (descriptor >= 0)
            ::close(descriptor);
    }
}

bool PathWatch::watch(const QByteArray &path, End end)
{
    if (m_events < 0 || m_mounts < 0 || !path.startsWith('/'))
        return false;
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
