// SPDX-License-Identifier: MIT
#include "filesystem/namesInFolder.h"

#include <algorithm>
#include <cerrno>
#include <dirent.h>

std::optional<std::vector<QByteArray>> namesInFolder(const QByteArray &folder)
{
    DIR *const listing = ::opendir(folder.constData());
    if (!listing)
        return std::nullopt;
    std::vector<QByteArray> names;
    errno = 0;
    while (const dirent *const entry = ::readdir(listing))
        names.emplace_back(entry->d_name);
    const int error = errno;
    ::closedir(listing);
    errno = error;
    if (error != 0)
        return std::nullopt;
    std::sort(names.begin(), names.end());
    return names;
}
