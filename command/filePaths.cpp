// SPDX-License-Identifier: MIT
#include "command/filePaths.h"

#include "filesystem/FileUrls.h"

#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace
{

/// C1 control characters, U+0080 to U+009F, are two bytes in UTF-8.
bool isControlPair(const QByteArray &path, qsizetype at)
{
    return uchar(path[at]) == 0xc2 && at + 1 < path.size() && uchar(path[at + 1]) >= 0x80 &&
           uchar(path[at + 1]) < 0xa0;
}

QByteArray octal(char byte)
{
    return '\\' + QByteArray::number(uchar(byte), 8).rightJustified(3, '0');
}

/// The position of the extension's dot, or the end.
qsizetype endOfBase(const QByteArray &path)
{
    const QByteArray extension = FileUrls::pathExtension(FilePaths::nameText(path)).toUtf8();
    return extension.isEmpty() || !path.endsWith(QByteArray('.' + extension))
               ? path.size()
               : path.size() - extension.size() - 1;
}

} // namespace

QByteArray FilePaths::folderOf(const QByteArray &path)
{
    return path.left(path.lastIndexOf('/') + 1);
}

QByteArray FilePaths::nameOf(const QByteArray &path)
{
    return path.mid(path.lastIndexOf('/') + 1);
}

QString FilePaths::nameText(const QByteArray &path)
{
    return QString::fromUtf8(nameOf(path));
}

QByteArray FilePaths::absolute(const QByteArray &path)
{
    if (path.startsWith('/'))
        return path;
    const std::unique_ptr<char, decltype(&::free)> folder(::getcwd(nullptr, 0), &::free);
    return folder ? QByteArray(folder.get()) + '/' + (path.startsWith("./") ? path.mid(2) : path)
                  : path;
}

bool FilePaths::isTaken(const QByteArray &path)
{
    struct stat status = {};
    return ::lstat(path.constData(), &status) == 0;
}

QByteArray FilePaths::numbered(const QByteArray &path, int counter)
{
    if (counter < 2)
        return path;
    const qsizetype end = endOfBase(path);
    return path.left(end) + '-' + QByteArray::number(counter) + path.mid(end);
}

QByteArray FilePaths::withoutNumber(const QByteArray &path)
{
    const qsizetype end = endOfBase(path);
    qsizetype digits = end;
    while (digits > 0 && path[digits - 1] >= '0' && path[digits - 1] <= '9')
        --digits;
    const bool hasNumber = digits < end && digits > 0 && path[digits - 1] == '-';
    return hasNumber ? path.left(digits - 1) + path.mid(end) : path;
}

QByteArray FilePaths::escaped(const QByteArray &path)
{
    QByteArray text;
    text.reserve(path.size());
    for (qsizetype at = 0; at < path.size(); ++at) {
        const char byte = path[at];
        if (byte == '\n')
            text += "\\n";
        else if (byte == '\t')
            text += "\\t";
        else if (byte == '\\')
            text += "\\\\";
        else if (uchar(byte) < 0x20 || byte == 0x7f)
            text += octal(byte);
        else if (isControlPair(path, at)) {
            text += octal(byte) + octal(path[at + 1]);
            ++at;
        } else
            text += byte;
    }
    return text;
}
