// SPDX-License-Identifier: MIT
#include "filesystem/OpenFile.h"

#include <QFile>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace
{

qint64 nanoseconds(const struct statx_timestamp &time)
{
    return qint64(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

std::optional<FileIdentity> identity(int folder, const char *path, int flags)
{
    struct statx status = {};
    constexpr unsigned wanted = STATX_BASIC_STATS | STATX_BTIME;
    if (::statx(folder, path, flags, wanted, &status) != 0 || !S_ISREG(status.stx_mode))
        return std::nullopt;
    FileIdentity identity;
    identity.device = makedev(status.stx_dev_major, status.stx_dev_minor);
    identity.serial = status.stx_ino;
    identity.size = qint64(status.stx_size);
    identity.modified = nanoseconds(status.stx_mtime);
    identity.statusChanged = nanoseconds(status.stx_ctime);
    if (status.stx_mask & STATX_BTIME)
        identity.made = nanoseconds(status.stx_btime);
    return identity;
}

} // namespace

std::optional<FileIdentity> fileIdentity(int descriptor)
{
    return identity(descriptor, "", AT_EMPTY_PATH);
}

std::optional<FileIdentity> fileIdentity(const QString &path)
{
    return identity(AT_FDCWD, QFile::encodeName(path).constData(), 0);
}
