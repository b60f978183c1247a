// SPDX-License-Identifier: MIT
#include "filesystem/copyFile.h"

#include "filesystem/Descriptor.h"
#include "filesystem/moveWithinFileSystem.h"

#include <QByteArray>
#include <QList>
#include <QStringBuilder>

#include <atomic>
#include <fcntl.h>
#include <sys/xattr.h>
#include <vector>

namespace
{

constexpr size_t bufferSize = 1U << 18U;
constexpr mode_t ownerReadsAndWrites = S_IRUSR | S_IWUSR;
constexpr mode_t permissionBits = 07777;

QByteArray folderOf(const QByteArray &path)
{
    return path.left(path.lastIndexOf('/') + 1);
}

std::error_code writeAll(int to, const char *bytes, size_t count)
{
    while (count > 0) {
        const ssize_t put = ::write(to, bytes, count);
        if (put < 0 && errno != EINTR)
            return lastError();
        if (put > 0) {
            bytes += put;
            count -= static_cast<size_t>(put);
        }
    }
    return {};
}

std::error_code copyBytes(int from, int to)
{
    std::vector<char> buffer(bufferSize);
    for (;;) {
        const ssize_t got = ::read(from, buffer.data(), buffer.size());
        if (got == 0)
            return {};
        if (got < 0 && errno != EINTR)
            return lastError();
        if (got < 0)
            continue;
        if (const std::error_code error = writeAll(to, buffer.data(), static_cast<size_t>(got)))
            return error;
    }
}

void copyExtendedAttributes(int from, int to)
{
    const ssize_t length = ::flistxattr(from, nullptr, 0);
    QByteArray names(length > 0 ? length : 0, '\0');
    if (::flistxattr(from, names.data(), static_cast<size_t>(names.size())) != length)
        return;
    for (const QByteArray &name : names.split('\0')) {
        const ssize_t size = name.isEmpty() ? -1 : ::fgetxattr(from, name.constData(), nullptr, 0);
        if (size < 0)
            continue;
        QByteArray value(size, '\0');
        if (::fgetxattr(from, name.constData(), value.data(), static_cast<size_t>(size)) == size)
            ::fsetxattr(to, name.constData(), value.constData(), static_cast<size_t>(size), 0);
    }
}

/// A file system that lacks attributes or permissions must not stop the move.
void copyAttributes(int from, int to, const struct stat &original)
{
    copyExtendedAttributes(from, to);
    ::fchmod(to, original.st_mode & permissionBits);
    const struct timespec times[] = {original.st_atim, original.st_mtim};
    ::futimens(to, times);
}

/// Copies everything but the name.
std::error_code copyContent(int from, int to, struct stat *original, struct stat *copy)
{
    if (::fstat(from, original) != 0)
        return lastError();
    if (const std::error_code error = copyBytes(from, to))
        return error;
    copyAttributes(from, to, *original);
    if (::fsync(to) != 0 || ::fstat(to, copy) != 0 || ::fstat(from, original) != 0)
        return lastError();
    return copy->st_size == original->st_size ? std::error_code()
                                              : std::make_error_code(std::errc::io_error);
}

/// Copies through a nameless file, so that nothing is left behind even when the program dies.
/// `std::errc::operation_not_supported` when the file system has no such files.
std::error_code copyThroughNamelessFile(int from, const char *destination, struct stat *original,
                                        struct stat *copy)
{
    const auto unsupported = std::make_error_code(std::errc::operation_not_supported);
    const Descriptor to(::open(folderOf(destination).constData(), O_WRONLY | O_TMPFILE | O_CLOEXEC,
                               ownerReadsAndWrites));
    if (!to)
        return errno == EISDIR || errno == EINVAL || errno == ENOSYS ? unsupported : lastError();
    if (const std::error_code error = copyContent(from, to.number(), original, copy))
        return error;
    const QByteArray nameless = "/proc/self/fd/" + QByteArray::number(to.number());
    if (::linkat(AT_FDCWD, nameless.constData(), AT_FDCWD, destination, AT_SYMLINK_FOLLOW) == 0)
        return {};
    return errno == EEXIST ? lastError() : unsupported;
}

/// A name in the destination's folder that no other copy uses.
QByteArray temporaryName(const char *destination)
{
    static std::atomic<unsigned> count = 0;
    return folderOf(destination) + ".velmora-" + QByteArray::number(::getpid()) + '-' +
           QByteArray::number(++count);
}

std::error_code copyThroughTemporaryName(int from, const char *destination, struct stat *original,
                                         struct stat *copy)
{
    const QByteArray temporary = temporaryName(destination);
    Descriptor to(::open(temporary.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC,
                         ownerReadsAndWrites));
    if (!to)
        return lastError();
    std::error_code error = copyContent(from, to.number(), original, copy);
    if (!to.close() && !error)
        error = lastError();
    if (!error)
        error = moveWithinFileSystem(temporary.constData(), destination);
    if (error)
        ::unlink(temporary.constData());
    return error;
}

std::error_code copyRegularFile(const char *source, const char *destination, struct stat *original,
                                struct stat *copy)
{
    const Descriptor from(::open(source, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!from)
        return lastError();
    const std::error_code error =
        copyThroughNamelessFile(from.number(), destination, original, copy);
    if (error != std::errc::operation_not_supported)
        return error;
    if (::lseek(from.number(), 0, SEEK_SET) != 0)
        return lastError();
    return copyThroughTemporaryName(from.number(), destination, original, copy);
}

std::error_code copyLink(const char *source, const char *destination, const struct stat &original,
                         struct stat *copy)
{
    QByteArray target(static_cast<qsizetype>(original.st_size) + 1, '\0');
    const ssize_t got = ::readlink(source, target.data(), static_cast<size_t>(target.size()));
    if (got < 0)
        return lastError();
    if (got >= target.size())
        return std::make_error_code(std::errc::io_error);
    target.truncate(got);
    if (::symlink(target.constData(), destination) != 0)
        return lastError();
    const struct timespec times[] = {original.st_atim, original.st_mtim};
    ::utimensat(AT_FDCWD, destination, times, AT_SYMLINK_NOFOLLOW);
    return ::lstat(destination, copy) == 0 ? std::error_code() : lastError();
}

} // namespace

std::error_code copyFile(const char *source, const char *destination, struct stat *original,
                         struct stat *copy)
{
    if (::lstat(source, original) != 0)
        return lastError();
    if (::lstat(destination, copy) == 0)
        return std::make_error_code(std::errc::file_exists);
    if (S_ISREG(original->st_mode))
        return copyRegularFile(source, destination, original, copy);
    if (S_ISLNK(original->st_mode))
        return copyLink(source, destination, *original, copy);
    return std::make_error_code(std::errc::cross_device_link);
}
