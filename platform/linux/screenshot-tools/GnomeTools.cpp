// SPDX-License-Identifier: MIT
#include "platform/linux/screenshot-tools/GnomeTools.h"

#include "platform/linux/freedesktop/UserDirectories.h"
#include "platform/linux/screenshot-tools/GSettings.h"
#include "platform/linux/screenshot-tools/Translations.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace GnomeTools
{

Folder picturesOrHome()
{
    return UserDirectories::folder(u"PICTURES"_s).value_or(QDir::homePath());
}

// gnome-screenshot, which Cinnamon's shortcuts run.

Folder gnomeScreenshotFolder(const Folder &setting)
{
    return setting && !setting->isEmpty() ? UserDirectories::ofThisMachine(*setting)
                                          : picturesOrHome();
}

QList<SystemCommand> storeGnomeScreenshotFolder(const QString &path)
{
    return GSettings::storeString(gnomeScreenshotSetting,
                                  QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded));
}

// GNOME Shell: a folder named in the language of the session, and no setting. It creates the folder
// with its first screenshot. A user who never takes one may use gnome-screenshot.

QString gnomeShellPath()
{
    return *picturesOrHome() + u'/' + Translations::translated("gnome-shell", "Screenshots");
}

Folder gnomeShellFolder()
{
    return gnomeShellPath();
}

Folder gnomeFolder(const Folder &gnomeScreenshot)
{
    const QString path = gnomeShellPath();
    return gnomeScreenshot && !QFileInfo::exists(path) ? gnomeScreenshotFolder(gnomeScreenshot)
                                                       : path;
}

// elementary's tool.

Folder elementaryFolder(const Folder &setting)
{
    if (setting && !setting->isEmpty())
        return UserDirectories::ofThisMachine(*setting);
    return *picturesOrHome() + u'/' +
           Translations::translated("io.elementary.screenshot", "Screenshots");
}

QList<SystemCommand> storeElementaryFolder(const QString &path)
{
    return GSettings::storeString(elementarySetting, path);
}

// MATE's tool asks where to save, and suggests the last folder.

Folder desktopFolder()
{
    return UserDirectories::folder(u"DESKTOP"_s);
}

Folder mateFolder(const Folder &setting)
{
    return setting && !setting->isEmpty() ? UserDirectories::ofThisMachine(*setting)
                                          : desktopFolder();
}

QList<SystemCommand> storeMateFolder(const QString &path)
{
    return GSettings::storeString(mateSetting,
                                  QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded));
}

} // namespace GnomeTools
