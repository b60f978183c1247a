// SPDX-License-Identifier: MIT
#include "platform/linux/screenshot-tools/SpectacleSettings.h"

#include "platform/linux/freedesktop/KeyFile.h"
#include "platform/linux/freedesktop/UserDirectories.h"

#include <QStandardPaths>
#include <QUrl>

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
    for (const QString &name : {QStringLiteral("kwriteconfig6"), QStringLiteral("kwriteconfig5")}) {
        const QString tool = QStandardPaths::findExecutable(name);
        if (!tool.isEmpty())
            return {{tool,
                     {QStringLiteral("--file"), QStringLiteral("spectaclerc"),
                      QStringLiteral("--group"), group, QStringLiteral("--key"), key, value}}};
    }
    return {};
}

} // namespace

namespace SpectacleSettings
{

QString file()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/spectaclerc");
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
    return isPlasma6() ? QString(pictures + QStringLiteral("/Screenshots")) : pictures;
}

QList<SystemCommand> storeFolder(const QString &path)
{
    const QString url = QUrl::fromLocalFile(path + u'/').toString(QUrl::FullyEncoded);
    if (isPlasma6())
        return write(QStringLiteral("ImageSave"), QStringLiteral("imageSaveLocation"), url);
    return write(QStringLiteral("Save"), QStringLiteral("defaultSaveLocation"), url);
}

QList<SystemCommand> saveAtOnce()
{
    return write(QStringLiteral("General"), QStringLiteral("autoSaveImage"),
                 QStringLiteral("true"));
}

} // namespace SpectacleSettings
