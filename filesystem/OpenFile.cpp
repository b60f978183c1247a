// SPDX-License-Identifier: MIT
#include "filesystem/OpenFile.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

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

bool OpenFile::isNameless() const
{
    struct stat status = {};
    return ::fstat(m_descriptor, &status) == 0 && status.st_nlink == 0;
}

qint64 readPart(int descriptor, qint64 from, char *to, qint64 maximum)
{
    qint64 filled = 0;
    while (filled < maximum) {
        const ssize_t count =
            ::pread(descriptor, to + filled, size_t(maximum - filled), off_t(from + filled));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return -1;
        if (count == 0)
            break;
        filled += count;
    }
    return filled;
}

std::optional<QByteArray> readWhole(int descriptor, qint64 maximum)
{
    const std::optional<FileIdentity> identity = fileIdentity(descriptor);
    if (!identity || identity->size > maximum)
        return std::nullopt;
    QByteArray bytes(identity->size, Qt::Uninitialized);
    const qint64 count = readPart(descriptor, 0, bytes.data(), bytes.size());
    if (count < 0)
        return std::nullopt;
    bytes.truncate(count); // the file may have become shorter
    return bytes;
}
