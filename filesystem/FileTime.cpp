// SPDX-License-Identifier: MIT
#include "filesystem/FileTime.h"

#include <algorithm>

namespace
{

constexpr std::chrono::seconds farthest{9'000'000'000};

FileTime toFileTime(const timespec &moment)
{
    const std::chrono::seconds seconds(moment.tv_sec);
    return FileTime(std::clamp(seconds, -farthest, farthest) +
                    std::chrono::nanoseconds(moment.tv_nsec));
}

/// These fields have different names on other systems.
template <typename Status>
FileTime modificationOf(const Status &status)
{
    if constexpr (requires { status.st_mtim; })
        return toFileTime(status.st_mtim);
    else
        return toFileTime(status.st_mtimespec);
}

template <typename Status>
FileTime changeOf(const Status &status)
{
    if constexpr (requires { status.st_ctim; })
        return toFileTime(status.st_ctim);
    else
        return toFileTime(status.st_ctimespec);
}

} // namespace

namespace FileTimes
{

FileTime now()
{
    return std::chrono::time_point_cast<FileTime::duration>(std::chrono::system_clock::now());
}

FileTime modified(const struct stat &status)
{
    return modificationOf(status);
}

FileTime changed(const struct stat &status)
{
    return changeOf(status);
}

} // namespace FileTimes
