// SPDX-License-Identifier: MIT
#include "platform/linux/screenshot-tools/ScreenshotTools.h"

#include "platform/linux/freedesktop/KeyFile.h"
#include "platform/linux/freedesktop/UserDirectories.h"
#include "platform/linux/screenshot-tools/GSettings.h"
#include "platform/linux/screenshot-tools/SpectacleSettings.h"
#include "platform/linux/screenshot-tools/Translations.h"

#include <QDir>
#include <QStandardPaths>
#include <QUrl>

#include <algorithm>
#include <array>

namespace
{

using namespace std::string_view_literals;
using Folder = std::optional<QString>;
using Commands = QList<SystemCommand>;

Folder picturesOrHome()
{
    return UserDirectories::folder(QStringLiteral("PICTURES")).value_or(QDir::homePath());
}

QString noFile()
{
    return {};
}

Folder unknownFolder()
{
    return std::nullopt;
}

Commands nothing()
{
    return {};
}

Commands noSetting(const QString &)
{
    return {};
}

// GNOME Shell: a folder whose name is in the language of the session, and no setting.

Folder gnomeFolder(const Folder &)
{
    return *picturesOrHome() + u'/' + Translations::translated("gnome-shell", "Screenshots");
}

// gnome-screenshot, which Cinnamon's keys run.

constexpr FollowedSetting::Name gnomeScreenshotSetting = {"org.gnome.gnome-screenshot",
                                                          "auto-save-directory"};

Folder gnomeScreenshotFolder(const Folder &setting)
{
    return setting && !setting->isEmpty() ? UserDirectories::ofThisMachine(*setting)
                                          : picturesOrHome();
}

Commands storeGnomeScreenshotFolder(const QString &path)
{
    return GSettings::storeString(gnomeScreenshotSetting,
                                  QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded));
}

// MATE's tool asks, and proposes the folder of the last time.

constexpr FollowedSetting::Name mateSetting = {"org.mate.screenshot", "last-save-directory"};

Folder desktopFolder()
{
    return UserDirectories::folder(QStringLiteral("DESKTOP"));
}

Folder mateFolder(const Folder &setting)
{
    return setting && !setting->isEmpty() ? UserDirectories::ofThisMachine(*setting)
                                          : desktopFolder();
}

Commands storeMateFolder(const QString &path)
{
    return GSettings::storeString(mateSetting,
                                  QUrl::fromLocalFile(path).toString(QUrl::FullyEncoded));
}

// Xfce's screenshooter: a file of keys without groups.

QString xfceFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/xfce4/xfce4-screenshooter");
}

Folder xfceFolder(const Folder &)
{
    const Folder stored = KeyFile::value(xfceFile(), {}, "screenshot_dir");
    if (!stored || stored->isEmpty())
        return picturesOrHome();
    return UserDirectories::ofThisMachine(*stored);
}

Commands storeXfceFolder(const QString &path)
{
    KeyFile::replaceLine(
        xfceFile(), "screenshot_dir=", "screenshot_dir=" + QUrl::fromLocalFile(path).toEncoded());
    return {};
}

// KDE's Spectacle.

Folder spectacleFolder(const Folder &)
{
    return SpectacleSettings::folder();
}

// COSMIC: no setting.

Folder cosmicFolder(const Folder &)
{
    return picturesOrHome();
}

// grim and the scripts around it: the environment and the user's folders.

Folder grimFolder(const Folder &)
{
    if (const Folder screenshots = UserDirectories::folder(QStringLiteral("SCREENSHOTS")))
        return screenshots;
    for (const char *name : {"XDG_SCREENSHOTS_DIR", "GRIM_DEFAULT_DIR"}) {
        if (const QString path = qEnvironmentVariable(name); !path.isEmpty())
            return UserDirectories::ofThisMachine(path);
    }
    return UserDirectories::folder(QStringLiteral("PICTURES"));
}

Commands storeGrimFolder(const QString &path)
{
    UserDirectories::store(QStringLiteral("SCREENSHOTS"), path);
    return {};
}

// niri takes screenshots itself, by default into this folder.

Folder niriFolder(const Folder &)
{
    return QString(QDir::homePath() + QStringLiteral("/Pictures/Screenshots"));
}

// A desktop that nothing is known of: where screenshots belong, if the user has said so.

Folder saidFolder(const Folder &)
{
    if (const Folder screenshots = UserDirectories::folder(QStringLiteral("SCREENSHOTS")))
        return screenshots;
    return UserDirectories::ofThisMachine(qEnvironmentVariable("XDG_SCREENSHOTS_DIR"));
}

constexpr std::array cinnamon = {"x-cinnamon"sv, "cinnamon"sv};
constexpr std::array cosmic = {"cosmic"sv};
constexpr std::array gnome = {"gnome"sv};
constexpr std::array kde = {"kde"sv};
constexpr std::array mate = {"mate"sv};
constexpr std::array niri = {"niri"sv};
constexpr std::array wlroots = {"sway"sv,    "hyprland"sv, "river"sv,  "wlroots"sv,
                                "wayfire"sv, "labwc"sv,    "swayfx"sv, "dwl"sv};
constexpr std::array xfce = {"xfce"sv};

constexpr FollowedSetting::Name noGSetting = {};

/// To support another desktop, add a line.
constexpr ScreenshotTool tools[] = {
    {cinnamon, noFile, gnomeScreenshotSetting, gnomeScreenshotFolder, picturesOrHome,
     storeGnomeScreenshotFolder, nothing},
    {cosmic, noFile, noGSetting, cosmicFolder, unknownFolder, noSetting, nothing},
    {gnome, noFile, noGSetting, gnomeFolder, unknownFolder, noSetting, nothing},
    {kde, SpectacleSettings::file, noGSetting, spectacleFolder, unknownFolder,
     SpectacleSettings::storeFolder, SpectacleSettings::saveAtOnce},
    {mate, noFile, mateSetting, mateFolder, desktopFolder, storeMateFolder, nothing},
    {niri, noFile, noGSetting, niriFolder, unknownFolder, noSetting, nothing},
    {wlroots, noFile, noGSetting, grimFolder, unknownFolder, storeGrimFolder, nothing},
    {xfce, xfceFile, noGSetting, xfceFolder, picturesOrHome, storeXfceFolder, nothing},
};

constexpr ScreenshotTool unknownTool = {{},        noFile, noGSetting, saidFolder, unknownFolder,
                                        noSetting, nothing};

} // namespace

namespace ScreenshotTools
{

const ScreenshotTool &toolOf(const QString &desktops)
{
    const QStringList names = desktops.toLower().split(u':', Qt::SkipEmptyParts);
    for (const QString &name : names) {
        for (const ScreenshotTool &tool : tools) {
            if (std::find(tool.desktops.begin(), tool.desktops.end(), name.toStdString()) !=
                tool.desktops.end())
                return tool;
        }
    }
    return unknownTool;
}

} // namespace ScreenshotTools
