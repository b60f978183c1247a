// SPDX-License-Identifier: MIT
#include "filesystem/moveWithinFileSystem.h"

#include "filesystem/Descriptor.h"
#include "filesystem/renameExclusively.h"

#include <QByteArray>
#include <QStringBuilder>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

bool isSameFile(const char *first, const char *second)
{
    struct stat a = {};
    struct stat b = {};
    return ::lstat(first, &a) == 0 && ::lstat(second, &b) == 0 && a.st_dev == b.st_dev &&
           a.st_ino == b.st_ino;
}

/// On a file system that ignores case, "Shot.png" can't be renamed to "shot.png" directly, because
/// that name already exists: it is the file itself.
std::error_code renameCaseOnly(const char *source, const char *destination)
{
    const QByteArray between = QByteArray(source) + ".velmora-case";
    if (const std::error_code error = renameExclusively(source, between.constData()))
        return error;
    const std::error_code error = renameExclusively(between.constData(), destination);
    if (error)
        renameExclusively(between.constData(), source);
    return error;
}

/// For file systems without an exclusive rename: adds a second name, which never replaces another,
/// then removes the first.
std::error_code linkAndUnlink(const char *source, const char *destination)
{
    if (::linkat(AT_FDCWD, source, AT_FDCWD, destination, 0) != 0)
        return lastError();
    if (::unlink(source) == 0)
        return std::error_code();
    const std::error_code error = lastError();
    ::unlink(destination);
    return error;
}

/// For file systems that lack hard links too: creates an empty file with that name and replaces
/// only that.
std::error_code replacePlaceholder(const char *source, const char *destination)
{
    Descriptor placeholder(
        ::open(destination, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!placeholder)
        return lastError();
    struct stat ours = {};
    struct stat found = {};
    const bool stillOurs = ::fstat(placeholder.number(), &ours) == 0 &&
                           ::lstat(destination, &found) == 0 && ours.st_ino == found.st_ino &&
                           found.st_size == 0;
    if (stillOurs && ::rename(source, destination) == 0)
        return std::error_code();
    const std::error_code error =
        stillOurs ? lastError() : std::make_error_code(std::errc::file_exists);
    if (stillOurs)
        ::unlink(destination);
    return error;
}

bool lacksHardLinks(const std::error_code &error)
{
    return error.value() == EPERM || error.value() == ENOTSUP || error.value() == ENOSYS ||
           error.value() == EMLINK;
}

} // namespace

std::error_code moveWithinFileSystem(const char *source, const char *destination)
{
    const std::error_code error = renameExclusively(source, destination);
    if (error.value() == EEXIST && isSameFile(source, destination) &&
        qstricmp(source, destination) == 0 && qstrcmp(source, destination) != 0)
        return renameCaseOnly(source, destination);
    if (!lacksExclusiveRename(error))
        return error;
    const std::error_code linkError = linkAndUnlink(source, destination);
    return lacksHardLinks(linkError) ? replacePlaceholder(source, destination) : linkError;
}
