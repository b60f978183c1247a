// SPDX-License-Identifier: MIT
#include "core/readSmallFile.h"

#include <QFile>

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

bool isFit(const struct stat &status)
{
    return S_ISREG(status.st_mode) && status.st_size <= largestSmallFile;
}

SmallFile failure()
{
    switch (errno) {
    case ENOENT:
    case ENOTDIR:
        return {SmallFile::State::Absent, {}};
    case EACCES:
    case EPERM:
    case ELOOP:
        return {SmallFile::State::Unfit, {}};
    default:
        return {SmallFile::State::Failed, {}};
    }
}

/// The file may have grown or shrunk since its size was read.
SmallFile readAll(int descriptor, qsizetype expected)
{
    QByteArray content(expected + 1, Qt::Uninitialized);
    qsizetype filled = 0;
    while (filled <= largestSmallFile) {
        if (filled == content.size())
            content.resize(largestSmallFile + 1);
        const ssize_t count = ::read(descriptor, content.data() + filled,
                                     static_cast<size_t>(content.size() - filled));
        if (count < 0 && errno == EINTR)
            continue;
        if (count < 0)
            return {SmallFile::State::Failed, {}};
        if (count == 0) {
            content.truncate(filled);
            return {SmallFile::State::Read, content};
        }
        filled += count;
    }
    return {SmallFile::State::Unfit, {}};
}

} // namespace

SmallFile readSmallFile(const QString &path, Links links)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat status = {};
    // Opening a device or a pipe can have side effects, so the type is checked before and after.
    const int found = links == Links::Follow ? ::stat(name.constData(), &status)
                                             : ::lstat(name.constData(), &status);
    if (found != 0)
        return failure();
    if (!isFit(status))
        return {SmallFile::State::Unfit, {}};
    const int refuseLinks = links == Links::Refuse ? O_NOFOLLOW : 0;
    const int descriptor =
        ::open(name.constData(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC | refuseLinks);
    if (descriptor < 0)
        return failure();
    SmallFile file = {SmallFile::State::Unfit, {}};
    if (::fstat(descriptor, &status) == 0 && isFit(status))
        file = readAll(descriptor, status.st_size);
    ::close(descriptor);
    return file;
}

std::optional<QByteArray> contentOfSmallFile(const QString &path, Links links)
{
    const SmallFile file = readSmallFile(path, links);
    return file.state == SmallFile::State::Read ? std::optional(file.content) : std::nullopt;
}
