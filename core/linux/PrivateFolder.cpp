// SPDX-License-Identifier: MIT
#include "core/linux/PrivateFolder.h"

#include <QFile>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <thread>
#include <unistd.h>

using namespace std::chrono_literals;

namespace
{

constexpr mode_t ownersFile = S_IRUSR | S_IWUSR;
constexpr mode_t ownersFolder = S_IRWXU;
constexpr mode_t everybodyElse = S_IRWXG | S_IRWXO;

/// A writer holds the lock for milliseconds.
constexpr auto longestWaitForLock = 1s;
constexpr auto timeBetweenTries = 5ms;

bool makeFolders(const QByteArray &path)
{
    if (::mkdir(path.constData(), ownersFolder) == 0 || errno == EEXIST)
        return true;
    const qsizetype slash = path.lastIndexOf('/');
    return errno == ENOENT && slash > 0 && makeFolders(path.left(slash)) &&
           ::mkdir(path.constData(), ownersFolder) == 0;
}

/// Opens whatever is there without following a link, blocking or reading.
int openAsItIs(const QByteArray &path)
{
    return ::open(path.constData(), O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_NOCTTY | O_CLOEXEC);
}

bool isRegular(const QByteArray &path)
{
    struct stat status = {};
    return ::lstat(path.constData(), &status) == 0 && S_ISREG(status.st_mode);
}

void shutOut(int descriptor)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) == 0 && (status.st_mode & everybodyElse) != 0)
        ::fchmod(descriptor, status.st_mode & static_cast<mode_t>(~everybodyElse) & 07777);
}

bool writeAll(int descriptor, const QByteArray &content)
{
    qsizetype written = 0;
    while (written < content.size()) {
        const ssize_t count = ::write(descriptor, content.constData() + written,
                                      static_cast<size_t>(content.size() - written));
        if (count < 0 && errno != EINTR)
            return false;
        if (count > 0)
            written += count;
    }
    return ::fsync(descriptor) == 0;
}

bool moveAside(const QByteArray &from)
{
    constexpr int mostTries = 1000;
    for (int number = 1; number <= mostTries; ++number) {
        const QByteArray to = from + ".aside-" + QByteArray::number(number);
        if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) ==
            0)
            return true;
        if (errno != EEXIST)
            return false;
    }
    return false;
}

} // namespace

PrivateFolder::PrivateFolder(const QString &path) : m_path(QFile::encodeName(path)) {}

bool PrivateFolder::make() const
{
    return makeFolders(m_path);
}

void PrivateFolder::tidy(const QString &name) const
{
    const int folder = ::open(m_path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (folder < 0)
        return;
    shutOut(folder);
    ::close(folder);
    if (const QByteArray path = pathOf(name); isRegular(path)) {
        const int file = openAsItIs(path);
        shutOut(file);
        ::close(file);
    }
    const QByteArray draft = draftOf(name);
    const Lock lock(*this);
    if (isRegular(draft))
        ::unlink(draft.constData());
}

bool PrivateFolder::replace(const QString &name, const QByteArray &content) const
{
    const QByteArray draft = draftOf(name);
    if (isRegular(draft))
        ::unlink(draft.constData());
    else
        moveAside(draft);
    const int file =
        ::open(draft.constData(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, ownersFile);
    if (file < 0)
        return false;
    const bool isWritten = writeAll(file, content);
    const bool isKept = ::close(file) == 0 && isWritten;
    const QByteArray path = pathOf(name);
    if (isKept && ::rename(draft.constData(), path.constData()) == 0)
        return true;
    ::unlink(draft.constData());
    return false;
}

bool PrivateFolder::setAside(const QString &name) const
{
    return moveAside(pathOf(name));
}

/// Hidden, with a name that no user would give to a copy of the file.
QByteArray PrivateFolder::draftOf(const QString &name) const
{
    return m_path + "/." + QFile::encodeName(name) + ".new";
}

QByteArray PrivateFolder::pathOf(const QString &name) const
{
    return m_path + '/' + QFile::encodeName(name);
}

/// Locks the folder itself. A lock file could be left behind, or be something else.
PrivateFolder::Lock::Lock(const PrivateFolder &folder)
    : m_folder(::open(folder.m_path.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
{
    const auto end = std::chrono::steady_clock::now() + longestWaitForLock;
    while (m_folder >= 0 && ::flock(m_folder, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK &&
           std::chrono::steady_clock::now() < end)
        std::this_thread::sleep_for(timeBetweenTries);
}

PrivateFolder::Lock::~Lock()
{
    if (m_folder >= 0)
        ::close(m_folder);
}
