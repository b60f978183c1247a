// SPDX-License-Identifier: MIT
#include "tests/detection/FolderActions.h"

#include <QFile>
#include <QTemporaryDir>

#include <fcntl.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace FolderActions
{

bool write(const QString &path, const QByteArray &content)
{
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(content) == content.size();
}

bool writeRaw(const QByteArray &path)
{
    const int file = ::open(path.constData(), O_CREAT | O_WRONLY | O_CLOEXEC, 0600);
    return file >= 0 && ::close(file) == 0;
}

bool setDate(const QString &path, FileTime date)
{
    const auto seconds = std::chrono::floor<std::chrono::seconds>(date);
    const timespec moment = {seconds.time_since_epoch().count(), (date - seconds).count()};
    const timespec times[] = {moment, moment};
    return ::utimensat(AT_FDCWD, QFile::encodeName(path).constData(), times, AT_SYMLINK_NOFOLLOW) ==
           0;
}

bool moveIn(const QString &path, FileTime date)
{
    const QTemporaryDir aside;
    const QString made = aside.filePath(u"made"_s);
    return write(made) && setDate(made, date) && rename(made, path);
}

bool rename(const QString &path, const QString &newPath)
{
    return ::rename(QFile::encodeName(path).constData(), QFile::encodeName(newPath).constData()) ==
           0;
}

bool link(const QString &path, const QString &newPath)
{
    return ::link(QFile::encodeName(path).constData(), QFile::encodeName(newPath).constData()) == 0;
}

bool symlink(const QString &target, const QString &path)
{
    return ::symlink(QFile::encodeName(target).constData(), QFile::encodeName(path).constData()) ==
           0;
}

} // namespace FolderActions
