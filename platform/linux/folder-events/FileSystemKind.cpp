// SPDX-License-Identifier: MIT
#include "platform/linux/folder-events/FileSystemKind.h"

#include <algorithm>
#include <array>

#include <fcntl.h>
#include <linux/fs.h>
#include <linux/magic.h>
#include <sys/ioctl.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace
{

constexpr unsigned int zfsMagic = 0x2FC12FC1;
constexpr unsigned int bcachefsMagic = 0xCA451A4E;

constexpr std::array<unsigned int, 12> localFileSystems = {
    EXT4_SUPER_MAGIC,  XFS_SUPER_MAGIC,       BTRFS_SUPER_MAGIC, TMPFS_MAGIC,
    RAMFS_MAGIC,       OVERLAYFS_SUPER_MAGIC, F2FS_SUPER_MAGIC,  REISERFS_SUPER_MAGIC,
    NILFS_SUPER_MAGIC, ECRYPTFS_SUPER_MAGIC,  zfsMagic,          bcachefsMagic,
};

/// Such a folder reports an entry in the spelling used by the process that touched it.
bool ignoresCase(int descriptor)
{
    int flags = 0;
    return ::ioctl(descriptor, FS_IOC_GETFLAGS, &flags) == 0 && (flags & FS_CASEFOLD_FL) != 0;
}

bool isLocal(int descriptor)
{
    struct statfs status = {};
    if (::fstatfs(descriptor, &status) != 0)
        return false;
    const auto kind = static_cast<unsigned int>(status.f_type);
    return std::find(localFileSystems.begin(), localFileSystems.end(), kind) !=
           localFileSystems.end();
}

} // namespace

bool reportsEveryChange(const QByteArray &folder)
{
    const int descriptor = ::open(folder.constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return false;
    const bool all = isLocal(descriptor) && !ignoresCase(descriptor);
    ::close(descriptor);
    return all;
}
