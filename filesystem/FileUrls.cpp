// SPDX-License-Identifier: MIT
#include "filesystem/FileUrls.h"

#include <QDir>
#include <QFileInfo>

namespace
{

QString lastComponent(const QString &path)
{
    return path.section(QLatin1Char('/'), -1, -1, QString::SectionSkipEmpty);
}

/// The position of the extension's dot in the name, or -1 when the name has no extension.
qsizetype extensionDot(const QString &name)
{
    const qsizetype dot = name.lastIndexOf(QLatin1Char('.'));
    const bool hasExtension =
        dot > 0 && dot + 1 < name.size() && name.indexOf(QLatin1Char(' '), dot) < 0;
    return hasExtension ? dot : -1;
}

} // namespace

namespace FileUrls
{

QUrl standardized(const QUrl &url)
{
    return fromPath(url.toLocalFile());
}

QUrl fromPath(const QString &path)
{
    return QUrl::fromLocalFile(QDir::cleanPath(path));
}

QUrl parentFolder(const QUrl &url)
{
    return fromPath(QFileInfo(QDir::cleanPath(url.toLocalFile())).path());
}

QUrl child(const QUrl &folder, const QString &name)
{
    return fromPath(folder.toLocalFile() + QLatin1Char('/') + name);
}

QString lastPathComponent(const QUrl &url)
{
    return lastComponent(url.toLocalFile());
}

QString pathExtension(const QString &path)
{
    const QString name = lastComponent(path);
    const qsizetype dot = extensionDot(name);
    return dot < 0 ? QString() : name.mid(dot + 1);
}

QString baseName(const QString &path)
{
    const QString name = lastComponent(path);
    const qsizetype dot = extensionDot(name);
    return dot < 0 ? name : name.left(dot);
}

bool exists(const QUrl &url)
{
    return QFileInfo::exists(url.toLocalFile());
}

QUrl numbered(const QUrl &wanted, int counter)
{
    const QString name = lastPathComponent(wanted);
    const QString extension = pathExtension(name);
    const QString suffix = extension.isEmpty() ? QString() : QLatin1Char('.') + extension;
    return child(parentFolder(wanted),
                 baseName(name) + QLatin1Char('-') + QString::number(counter) + suffix);
}

} // namespace FileUrls
