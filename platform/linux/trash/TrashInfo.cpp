// SPDX-License-Identifier: MIT
#include "platform/linux/trash/TrashInfo.h"

#include "filesystem/FileUrls.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

constexpr char infoSuffix[] = ".trashinfo";
constexpr char filesFolder[] = "/files/";
constexpr mode_t ownerReadsAndWrites = S_IRUSR | S_IWUSR;

/// At most the first `length` bytes of a UTF-8 text, without a partial character at the end.
QByteArray leftPart(const QByteArray &text, qsizetype length)
{
    if (length >= text.size())
        return text;
    while (length > 0 && (static_cast<unsigned char>(text.at(length)) & 0xC0U) == 0x80U)
        --length;
    return text.left(std::max<qsizetype>(length, 0));
}

std::error_code lastError()
{
    return {errno, std::generic_category()};
}

std::error_code writeAll(int descriptor, const QByteArray &content)
{
    for (qsizetype done = 0; done < content.size();) {
        const ssize_t put = ::write(descriptor, content.constData() + done,
                                    static_cast<size_t>(content.size() - done));
        if (put < 0 && errno != EINTR)
            return lastError();
        done += std::max<ssize_t>(put, 0);
    }
    return {};
}

} // namespace

QByteArray TrashInfo::pathFor(const QByteArray &trashedFile)
{
    const qsizetype name = trashedFile.lastIndexOf('/') + 1;
    if (!trashedFile.left(name).endsWith(filesFolder))
        return {};
    const QByteArray trash = trashedFile.left(name - qsizetype(sizeof filesFolder - 1));
    return trash + "/info/" + trashedFile.mid(name) + infoSuffix;
}

QByteArray TrashInfo::nameInTrash(const QByteArray &name, int attempt, long maximumLength)
{
    const qsizetype room = maximumLength - qsizetype(sizeof infoSuffix - 1);
    const QString wanted = QFile::decodeName(name);
    QByteArray end = QFile::encodeName(FileUrls::pathExtension(wanted));
    if (!end.isEmpty())
        end.prepend('.');
    // In a name this long, the text after the last dot is not an extension.
    if (end.size() > room / 2)
        end.clear();
    const QByteArray base = name.chopped(end.size());
    if (attempt > 1)
        end.prepend('.' + QByteArray::number(attempt));
    return leftPart(base, room - end.size()) + end;
}

QByteArray TrashInfo::content(const QByteArray &path, const QDateTime &deleted)
{
    return "[Trash Info]\nPath=" + path.toPercentEncoding("/") +
           "\nDeletionDate=" + deleted.toLocalTime().toString(u"yyyy-MM-ddTHH:mm:ss").toLatin1() +
           '\n';
}

std::error_code TrashInfo::write(const QByteArray &infoPath, const QByteArray &content)
{
    const int descriptor =
        ::open(infoPath.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, ownerReadsAndWrites);
    if (descriptor < 0)
        return lastError();
    std::error_code error = writeAll(descriptor, content);
    // Some file systems report a full disk only here.
    if (::close(descriptor) != 0 && !error)
        error = lastError();
    if (error)
        ::unlink(infoPath.constData());
    return error;
}
