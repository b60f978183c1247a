// SPDX-License-Identifier: MIT
#include "platform/linux/screenshot-tools/IniTool.h"

#include "core/IniText.h"
#include "core/readSmallFile.h"

#include <QDate>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>
#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{

QString withToday(QString path)
{
    const QDate today = QDate::currentDate();
    return path.replace(u"$Y"_s, today.toString(u"yyyy"_s))
        .replace(u"$M"_s, today.toString(u"MM"_s))
        .replace(u"$D"_s, today.toString(u"dd"_s));
}

QString fromHome(const QString &path)
{
    if (path == u'~' || path.startsWith(u"~/"_s))
        return QDir::homePath() + path.mid(1);
    return QDir::cleanPath(QDir(QDir::homePath()).absoluteFilePath(path));
}

void change(const QString &file, const QByteArray &group, const QString &key, const QVariant &value)
{
    const std::optional<QByteArray> text = contentOfSmallFile(file, Links::Follow);
    if (!text)
        return;
    const QByteArray changed = IniText::changed(*text, {{key, value}}, group);
    QSaveFile saved(file);
    if (saved.open(QIODevice::WriteOnly) && saved.write(changed) == changed.size())
        saved.commit();
}

} // namespace

QString IniTool::file() const
{
    const QString own = QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
                        u'/' + QString::fromLatin1(configFile);
    if (!sandboxFile || QFileInfo::exists(own))
        return own;
    const QString sandboxed = QDir::homePath() + u'/' + QString::fromLatin1(sandboxFile);
    return QFileInfo::exists(sandboxed) ? sandboxed : own;
}

std::optional<QString> IniTool::folder() const
{
    const QByteArray text = contentOfSmallFile(file(), Links::Follow).value_or(QByteArray());
    const QVariant value = IniText::values(text, group).value(QString::fromLatin1(key));
    // A comma in the value makes it a list.
    const QString path = value.toStringList().join(u", "_s);
    return path.isEmpty() ? std::nullopt : std::optional(withToday(fromHome(path)));
}

void IniTool::storeFolder(const QString &path) const
{
    if (folder())
        change(file(), group, QString::fromLatin1(key), path);
}

void IniTool::setOn(const char *switchKey) const
{
    change(file(), group, QString::fromLatin1(switchKey), u"true"_s);
}
