#include "filesystem/OpenFile.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <unistd.h>

namespace
{

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
