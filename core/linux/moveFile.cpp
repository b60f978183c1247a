#include "core/moveFile.h"

#include <QByteArray>
#include <QFile>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace
{

std::error_code noError()
{
    return {};
}

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

/// A descriptor that closes itself.
class Descriptor
{
public:
    explicit Descriptor(int number) : m_number(number) {}
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor() { close(); }

    explicit operator bool() const { return m_number >= 0; }
    int number() const { return m_number; }

    /// False when the system could not keep what was written.
    bool close()
    {
        const int number = std::exchange(m_number, -1);
        return number < 0 || ::close(number) == 0;
    }

private:
    int m_number;
};

std::error_code renameExclusively(const char *source, const char *destination)
{
    return ::renameat2(AT_FDCWD, source, AT_FDCWD, destination, RENAME_NOREPLACE) == 0
               ? noError()
               : lastError();
}

bool isSameFile(const char *first, const char *second)
{
    struct stat a = {};
    struct stat b = {};
    return ::lstat(first, &a) == 0 && ::lstat(second, &b) == 0 && a.st_dev == b.st_dev &&
           a.st_ino == b.st_ino;
}

/// On a file system that ignores case, "Shot.png" stands in the way of itself as "shot.png".
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

/// For file systems without an exclusive rename: a second name, which never replaces one, and then
/// the first name's end.
std::error_code linkAndUnlink(const char *source, const char *destination)
{
    if (::linkat(AT_FDCWD, source, AT_FDCWD, destination, 0) != 0)
        return lastError();
    if (::unlink(source) == 0)
        return noError();
    const std::error_code error = lastError();
    ::unlink(destination);
    return error;
}

/// For file systems without hard links too: an empty file of our own takes the name, and only that
/// one is replaced.
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
        return noError();
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

std::error_code moveWithinFileSystem(const char *source, const char *destination)
{
    const std::error_code error = renameExclusively(source, destination);
    if (error.value() == EEXIST && isSameFile(source, destination) &&
        qstricmp(source, destination) == 0 && qstrcmp(source, destination) != 0)
        return renameCaseOnly(source, destination);
    const bool lacksExclusiveRename =
        error.value() == EINVAL || error.value() == ENOSYS || error.value() == ENOTSUP;
    if (!lacksExclusiveRename)
        return error;
    const std::error_code linkError = linkAndUnlink(source, destination);
    return lacksHardLinks(linkError) ? replacePlaceholder(source, destination) : linkError;
}

bool copyBytes(int from, int to)
{
    std::vector<char> buffer(1U << 18U);
    for (;;) {
        const ssize_t got = ::read(from, buffer.data(), buffer.size());
        if (got <= 0)
            return got == 0;
        for (ssize_t done = 0; done < got;) {
            const ssize_t put = ::write(to, buffer.data() + done, static_cast<size_t>(got - done));
            if (put < 0)
                return false;
            done += put;
        }
    }
}

/// As far as the other file system can hold them: one that has no extended attributes is no reason
/// to keep the file from its place.
void copyAttributes(int from, int to, const struct stat &status)
{
    const ssize_t length = ::flistxattr(from, nullptr, 0);
    QByteArray names(length > 0 ? length : 0, '\0');
    if (::flistxattr(from, names.data(), static_cast<size_t>(names.size())) == length) {
        for (const QByteArray &name : names.split('\0')) {
            const ssize_t size =
                name.isEmpty() ? -1 : ::fgetxattr(from, name.constData(), nullptr, 0);
            if (size < 0)
                continue;
            QByteArray value(size, '\0');
            if (::fgetxattr(from, name.constData(), value.data(), static_cast<size_t>(size)) ==
                size)
                ::fsetxattr(to, name.constData(), value.constData(), static_cast<size_t>(size), 0);
        }
    }
    ::fchmod(to, status.st_mode & 07777);
    const struct timespec times[] = {status.st_atim, status.st_mtim};
    ::futimens(to, times);
}

std::error_code copyRegularFile(const char *source, const char *copy)
{
    Descriptor from(::open(source, O_RDONLY | O_NOFOLLOW | O_CLOEXEC));
    struct stat status = {};
    if (!from || ::fstat(from.number(), &status) != 0)
        return lastError();
    Descriptor to(::open(copy, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, S_IRUSR | S_IWUSR));
    if (!to)
        return lastError();
    if (!copyBytes(from.number(), to.number()))
        return lastError();
    copyAttributes(from.number(), to.number(), status);
    struct stat written = {};
    if (::fsync(to.number()) != 0 || ::fstat(to.number(), &written) != 0)
        return lastError();
    if (::fstat(from.number(), &status) != 0 || written.st_size != status.st_size)
        return std::make_error_code(std::errc::io_error);
    return to.close() ? noError() : lastError();
}

std::error_code copyLink(const char *source, const char *copy, off_t length)
{
    QByteArray target(static_cast<qsizetype>(length) + 1, '\0');
    const ssize_t got = ::readlink(source, target.data(), static_cast<size_t>(target.size()));
    if (got < 0 || got > length)
        return got < 0 ? lastError() : std::make_error_code(std::errc::io_error);
    target.truncate(got);
    return ::symlink(target.constData(), copy) == 0 ? noError() : lastError();
}

/// A name beside the destination that no other move uses.
QByteArray temporaryName(const char *destination)
{
    static std::atomic<unsigned> count = 0;
    return QByteArray(destination).left(QByteArray(destination).lastIndexOf('/') + 1) +
           ".velmora-" + QByteArray::number(::getpid()) + '-' + QByteArray::number(++count);
}

std::error_code moveAcrossFileSystems(const char *source, const char *destination)
{
    struct stat status = {};
    if (::lstat(source, &status) != 0)
        return lastError();
    if (!S_ISREG(status.st_mode) && !S_ISLNK(status.st_mode))
        return std::make_error_code(std::errc::cross_device_link);
    if (::access(destination, F_OK) == 0)
        return std::make_error_code(std::errc::file_exists);
    const QByteArray copy = temporaryName(destination);
    std::error_code error = S_ISREG(status.st_mode)
                                ? copyRegularFile(source, copy.constData())
                                : copyLink(source, copy.constData(), status.st_size);
    if (!error)
        error = moveWithinFileSystem(copy.constData(), destination);
    if (error) {
        ::unlink(copy.constData());
        return error;
    }
    if (::unlink(source) == 0)
        return noError();
    error = lastError();
    ::unlink(destination);
    return error;
}

} // namespace

std::error_code moveFile(const QUrl &source, const QUrl &destination)
{
    const QByteArray from = QFile::encodeName(source.toLocalFile());
    const QByteArray to = QFile::encodeName(destination.toLocalFile());
    const std::error_code error = moveWithinFileSystem(from.constData(), to.constData());
    return error.value() == EXDEV ? moveAcrossFileSystems(from.constData(), to.constData()) : error;
}
