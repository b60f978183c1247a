// SPDX-License-Identifier: MIT
#include "filesystem/copyFile.h"

#include "filesystem/Descriptor.h"
#include "filesystem/moveWithinFileSystem.h"

#include <QByteArray>
#include <QStringBuilder>

#include <atomic>
#include <copyfile.h>
#include <fcntl.h>

namespace
{

/// A name beside the destination that no other copy uses.
QByteArray temporaryName(const char *destination)
{
    static std::atomic<unsigned> count = 0;
    const QByteArray path = destination;
    return path.left(path.lastIndexOf('/') + 1) + ".velmora-" + QByteArray::number(::getpid()) +
           '-' + QByteArray::number(++count);
}

/// Copies a regular file. A file system that lacks attributes or permissions must not stop the
/// move.
std::error_code copyContent(const char *source, const char *temporary)
{
    constexpr copyfile_flags_t flags = COPYFILE_NOFOLLOW;
    if (::copyfile(source, temporary, nullptr, flags | COPYFILE_EXCL | COPYFILE_DATA) != 0)
        return lastError();
    ::copyfile(source, temporary, nullptr, flags | COPYFILE_METADATA);
    // Flushed to the disk, not only to the drive's own memory; network drives know only fsync.
    const Descriptor copy(::open(temporary, O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
    const bool isFlushed =
        copy && (::fcntl(copy.number(), F_FULLFSYNC) == 0 || ::fsync(copy.number()) == 0);
    return isFlushed ? std::error_code() : lastError();
}

std::error_code copyLink(const char *source, const char *temporary)
{
    constexpr copyfile_flags_t flags = COPYFILE_NOFOLLOW | COPYFILE_EXCL | COPYFILE_ALL;
    return ::copyfile(source, temporary, nullptr, flags) == 0 ? std::error_code() : lastError();
}

/// The original may have changed meanwhile.
std::error_code compare(const char *source, const char *temporary, struct stat *original,
                        struct stat *copy)
{
    if (::lstat(source, original) != 0 || ::lstat(temporary, copy) != 0)
        return lastError();
    return copy->st_size == original->st_size ? std::error_code()
                                              : std::make_error_code(std::errc::io_error);
}

} // namespace

std::error_code copyFile(const char *source, const char *destination, struct stat *original,
                         struct stat *copy)
{
    if (::lstat(source, original) != 0)
        return lastError();
    if (::lstat(destination, copy) == 0)
        return std::make_error_code(std::errc::file_exists);
    if (!S_ISREG(original->st_mode) && !S_ISLNK(original->st_mode))
        return std::make_error_code(std::errc::cross_device_link);

    const QByteArray temporary = temporaryName(destination);
    std::error_code error = S_ISREG(original->st_mode) ? copyContent(source, temporary.constData())
                                                       : copyLink(source, temporary.constData());
    // A file of that name that is not ours stays.
    if (error == std::errc::file_exists)
        return error;
    if (!error)
        error = compare(source, temporary.constData(), original, copy);
    if (!error)
        error = moveWithinFileSystem(temporary.constData(), destination);
    if (error)
        ::unlink(temporary.constData());
    return error;
}
