#include "filesystem/OpenFile.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

qint64 nanoseconds(const timespec &time)
{
    return qint64(time.tv_sec) * 1'000'000'000 + time.tv_nsec;
}

/// These fields have different names on other systems.
template <typename Status>
FileIdentity identityOf(const Status &status)
{
    FileIdentity identity;
    identity.device = quint64(status.st_dev);
    identity.serial = quint64(status.st_ino);
    identity.size = qint64(status.st_size);
    if constexpr (requires { status.st_mtimespec; }) {
        identity.modified = nanoseconds(status.st_mtimespec);
        identity.statusChanged = nanoseconds(status.st_ctimespec);
    } else {
        identity.modified = nanoseconds(status.st_mtim);
        identity.statusChanged = nanoseconds(status.st_ctim);
    }
    return identity;
}

/// Fewer bytes than `size` when the file has become shorter; nothing when it can't be read.
std::optional<QByteArray> read(int descriptor, qint64 size)
{
    QByteArray bytes(size, Qt::Uninitialized);
    qint64 filled = 0;
    while (filled < size) {
        const ssize_t count =
            ::pread(descriptor, bytes.data() + filled, size_t(size - filled), filled);
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return std::nullopt;
        if (count == 0)
            break;
        filled += count;
    }
    bytes.truncate(filled);
    return bytes;
}

} // namespace

std::optional<FileIdentity> fileIdentity(int descriptor)
{
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return identityOf(status);
}

std::optional<FileIdentity> fileIdentity(const QString &path)
{
    struct stat status = {};
    if (::stat(QFile::encodeName(path).constData(), &status) != 0 || !S_ISREG(status.st_mode))
        return std::nullopt;
    return identityOf(status);
}

std::shared_ptr<OpenFile> OpenFile::open(const QString &path)
{
    // Even opening a device can have an effect, so the kind is checked before and after.
    if (path.isEmpty() || !fileIdentity(path))
        return nullptr;
    const int descriptor =
        ::open(QFile::encodeName(path).constData(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY);
    if (descriptor < 0)
        return nullptr;
    std::shared_ptr<OpenFile> file(new OpenFile(descriptor));
    return file->identity() ? file : nullptr;
}

OpenFile::OpenFile(int descriptor) : m_descriptor(descriptor) {}

OpenFile::~OpenFile()
{
    ::close(m_descriptor);
}

std::optional<FileIdentity> OpenFile::identity() const
{
    return fileIdentity(m_descriptor);
}

QByteArray readBeginning(int descriptor, qint64 maximum)
{
    const std::optional<FileIdentity> identity = fileIdentity(descriptor);
    if (!identity)
        return {};
    return read(descriptor, std::min(identity->size, maximum)).value_or(QByteArray());
}

std::optional<QByteArray> readWhole(int descriptor, qint64 maximum)
{
    const std::optional<FileIdentity> identity = fileIdentity(descriptor);
    if (!identity || identity->size > maximum)
        return std::nullopt;
    return read(descriptor, identity->size);
}
