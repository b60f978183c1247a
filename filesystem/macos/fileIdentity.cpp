// SPDX-License-Identifier: MIT
#include "filesystem/OpenFile.h"

#include <QFile>

#include <sys/stat.h>

namespace
{

qint64 nanoseconds(const timespec &time)
{
    return qint64(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

std::optional<FileIdentity> identityOf(const struct stat &status)
{
    if (!S_ISREG(status.st_mode))
        return std::nullopt;
    FileIdentity identity;
    identity.device = quint64(status.st_dev);
    identity.serial = quint64(status.st_ino);
    identity.size = qint64(status.st_size);
    identity.modified = nanoseconds(status.st_mtimespec);
    identity.statusChanged = nanoseconds(status.st_ctimespec);
    identity.made = nanoseconds(status.st_birthtimespec);
    return identity;
}

} // namespace

std::optional<FileIdentity> fileIdentity(int descriptor)
{
    struct stat status = {};
    return ::fstat(descriptor, &status) == 0 ? identityOf(status) : std::nullopt;
}

std::optional<FileIdentity> fileIdentity(const QString &path)
{
    struct stat status = {};
    return ::stat(QFile::encodeName(path).constData(), &status) == 0 ? identityOf(status)
                                                                     : std::nullopt;
}
