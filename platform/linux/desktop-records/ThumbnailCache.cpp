// SPDX-License-Identifier: MIT
#include "platform/linux/desktop-records/ThumbnailCache.h"

#include "platform/linux/desktop-records/fileUri.h"

#include <QCryptographicHash>
#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QUrl>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace
{

bool isTaken(const QString &path)
{
    struct stat status = {};
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0;
}

QString thumbnailName(const QByteArray &uri)
{
    const QByteArray sum = QCryptographicHash::hash(uri, QCryptographicHash::Md5).toHex();
    return QString::fromLatin1(sum) + u".png"_s;
}

} // namespace

void ThumbnailCache::forget(const QString &path)
{
    if (isTaken(path))
        return;
    const QDir cache(QStandardPaths::writableLocation(QStandardPaths::GenericCacheLocation) +
                     u"/thumbnails"_s);
    QStringList folders;
    for (const QString &size : cache.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        folders.append(cache.filePath(size));
    // Where each program records the files that it could draw no thumbnail of.
    const QDir failed(cache.filePath(u"fail"_s));
    for (const QString &program : failed.entryList(QDir::Dirs | QDir::NoDotAndDotDot))
        folders.append(failed.filePath(program));
    // KDE encodes a few characters differently.
    for (const QByteArray &uri : {fileUri(path), QUrl::fromLocalFile(path).toEncoded()}) {
        for (const QString &folder : folders)
            QFile::remove(folder + u'/' + thumbnailName(uri));
    }
}
