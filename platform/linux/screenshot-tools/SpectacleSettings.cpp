// SPDX-License-Identifier: MIT
#include "platform/linux/screenshot-tools/SpectacleSettings.h"

#include "platform/linux/freedesktop/KeyFile.h"
#include "platform/linux/freedesktop/UserDirectories.h"

#include <QStandardPaths>
#include <QUrl>

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
