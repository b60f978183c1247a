// SPDX-License-Identifier: MIT
#include "platform/linux/freedesktop/UserDirectories.h"

#include "platform/linux/freedesktop/KeyFile.h"

#include <QDir>
#include <QFile>
#include <QStandardPaths>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace
{

QByteArray keyOf(const QString &name)
{
    return "XDG_" + name.toUtf8() + "_DIR";
}

/// Shells read the file too: values are in double quotes.
QByteArray quoted(const QString &path)
{
    QByteArray result = "\"";
    for (const char letter : QFile::encodeName(path)) {
        if (QByteArrayView("\"\\$`").contains(letter))
            result += '\\';
        result += letter;
    }
    return result + '"';
}

} // namespace

namespace UserDirectories
{

QString file()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           u"/user-dirs.dirs"_s;
}

std::optional<QString> folder(const QString &name)
{
    const std::optional<QString> value = KeyFile::value(file(), {}, keyOf(name));
    if (!value || value->size() < 2 || !value->startsWith(u'"') || !value->endsWith(u'"'))
        return std::nullopt;
    QString path = value->mid(1, value->size() - 2);
    if (path == u"$HOME"_s || path.startsWith(u"$HOME/"_s))
        path.replace(0, 5, QDir::homePath());
    return QDir::isAbsolutePath(path) ? std::optional(QDir::cleanPath(path)) : std::nullopt;
}

std::optional<QString> ofThisMachine(const QString &setting)
{
    if (setting.startsWith(u'/'))
        return setting;
    const QUrl url(setting);
    return url.isLocalFile() && url.host().isEmpty() ? std::optional(url.toLocalFile())
                                                     : std::nullopt;
}

void store(const QString &name, const QString &path)
{
    if (!path.contains(u'\n'))
        KeyFile::replaceLine(file(), keyOf(name) + '=', keyOf(name) + '=' + quoted(path));
}

} // namespace UserDirectories
