// SPDX-License-Identifier: MIT
#include "platform/linux/screenshot-tools/SpectacleSettings.h"

#include "platform/linux/freedesktop/KeyFile.h"
#include "platform/linux/freedesktop/UserDirectories.h"

#include <QDate>
#include <QDir>
#include <QLocale>
#include <QStandardPaths>
#include <QUrl>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

bool isPlasma6()
{
    return qEnvironmentVariableIntValue("KDE_SESSION_VERSION") >= 6;
}

std::optional<QString> value(const char *group, const char *key)
{
    const std::optional<QString> stored = KeyFile::value(SpectacleSettings::file(), group, key);
    return stored && !stored->isEmpty() ? stored : std::nullopt;
}

std::optional<QString> baseFolder()
{
    // From the newest version to the oldest.
    for (const auto &[group, key] :
         {std::pair("ImageSave", "imageSaveLocation"), std::pair("Save", "defaultSaveLocation"),
          std::pair("General", "default-save-location")}) {
        if (const std::optional<QString> stored = value(group, key))
            return UserDirectories::ofThisMachine(*stored);
    }
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    if (const auto frozenName = value("ImageSave", "translatedScreenshotsFolder"))
        return QString(pictures + u'/' + *frozenName);
    return isPlasma6() ? QString(pictures + u"/Screenshots"_s) : pictures;
}

/// A date's parts in patterns of file names: as the newer versions write them, as the older ones
/// do, and in Qt's way.
constexpr struct {
    QStringView newer;
    QStringView older;
    QStringView format;
} dateParts[] = {
    {u"<yyyy>", u"%Y", u"yyyy"}, {u"<yy>", u"%y", u"yy"}, {u"<MMMM>", u"%N", u"MMMM"},
    {u"<MMM>", u"%n", u"MMM"},   {u"<MM>", u"%M", u"MM"}, {u"<dddd>", {}, u"dddd"},
    {u"<ddd>", {}, u"ddd"},      {u"<dd>", u"%D", u"dd"},
};

/// The pattern of file names may contain folders. Empty when they depend on more than the date,
/// such as the window's title.
QString subfolderOfToday()
{
    const auto newer = value("ImageSave", "imageFilenameTemplate");
    QString path = newer ? *newer : value("Save", "saveFilenameFormat").value_or(QString());
    path.truncate(std::max(path.lastIndexOf(u'/'), qsizetype(0)));
    const QDate today = QDate::currentDate();
    for (const auto &part : dateParts) {
        const QStringView name = newer ? part.newer : part.older;
        if (!name.isEmpty())
            path.replace(name.toString(), QLocale::system().toString(today, part.format));
    }
    return path.contains(newer ? u'<' : u'%') ? QString() : path;
}

/// KDE's own tool writes the file under the lock that its programs respect.
QList<SystemCommand> write(const QString &group, const QString &key, const QString &value)
{
    for (const QString &name : {u"kwriteconfig6"_s, u"kwriteconfig5"_s}) {
        const QString tool = QStandardPaths::findExecutable(name);
        if (!tool.isEmpty())
            return {{tool,
                     {u"--file"_s, u"spectaclerc"_s, u"--group"_s, group, u"--key"_s, key, value}}};
    }
    return {};
}

} // namespace

namespace SpectacleSettings
{

QString file()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           u"/spectaclerc"_s;
}

std::optional<QString> folder()
{
    const std::optional<QString> base = baseFolder();
    const QString inside = subfolderOfToday();
    return base && !inside.isEmpty() ? QDir::cleanPath(*base + u'/' + inside) : base;
}

QList<SystemCommand> storeFolder(const QString &path)
{
    const QString url = QUrl::fromLocalFile(path + u'/').toString(QUrl::FullyEncoded);
    if (isPlasma6())
        return write(u"ImageSave"_s, u"imageSaveLocation"_s, url);
    return write(u"Save"_s, u"defaultSaveLocation"_s, url);
}

QList<SystemCommand> saveAtOnce()
{
    return write(u"General"_s, u"autoSaveImage"_s, u"true"_s);
}

} // namespace SpectacleSettings
