// SPDX-License-Identifier: MIT
#include "filesystem/moveFile.h"

#include "filesystem/Descriptor.h"
#include "filesystem/copyFile.h"
#include "filesystem/moveWithinFileSystem.h"

#include <QByteArray>
#include <QFile>

#include <fcntl.h>

namespace
{

/// By now another file may be at the path.
std::error_code unlinkIfStill(const char *path, const struct stat &file)
{
    struct stat found = {};
    if (::lstat(path, &found) != 0)
        return lastError();
    if (found.st_dev != file.st_dev || found.st_ino != file.st_ino)
        return std::make_error_code(std::errc::device_or_resource_busy);
    return ::unlink(path) == 0 ? std::error_code() : lastError();
}

/// Flushes the folder's new entry to the disk. Some file systems can't; that is not a failure.
void flushFolderOf(const QByteArray &path)
{
    const Descriptor folder(::open(path.left(path.lastIndexOf('/') + 1).constData(),
                                   O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (folder)
        ::fsync(folder.number());
}

std::error_code moveAcrossFileSystems(const char *source, const char *destination)
{
    struct stat original = {};
    struct stat copy = {};
    if (const std::error_code error = copyFile(source, destination, &original, &copy))
        return error;
    flushFolderOf(destination);
    const std::error_code error = unlinkIfStill(source, original);
    if (error)
        unlinkIfStill(destination, copy);
    return error;
}

} // namespace

std::error_code moveFile(const QUrl &source, const QUrl &destination)
{
    const QByteArray from = QFile::encodeName(source.toLocalFile());
    const QByteArray to = QFile::encodeName(destination.toLocalFile());
    const std::error_code error = moveWithinFileSystem(from.constData(), to.constData());
    return error == std::errc::cross_device_link
               ? moveAcrossFileSystems(from.constData(), to.constData())
               : error;
}
