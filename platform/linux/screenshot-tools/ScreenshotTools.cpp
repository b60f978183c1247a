// SPDX-License-Identifier: MIT
#include "platform/linux/screenshot-tools/ScreenshotTools.h"

#include "platform/linux/freedesktop/KeyFile.h"
#include "platform/linux/freedesktop/UserDirectories.h"
#include "platform/linux/screenshot-tools/GnomeTools.h"
#include "platform/linux/screenshot-tools/IniTool.h"
#include "platform/linux/screenshot-tools/NiriSettings.h"
#include "platform/linux/screenshot-tools/SpectacleSettings.h"

#include <QDir>
#include <QStandardPaths>
#include <QUrl>

using namespace Qt::StringLiterals;

namespace
{

using Folder = std::optional<QString>;
using Commands = QList<SystemCommand>;

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

// Xfce's screenshooter: a file of keys without groups.

QString xfceFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           u"/xfce4/xfce4-screenshooter"_s;
}

Folder xfceFolder(const Folder &)
{
    const Folder stored = KeyFile::value(xfceFile(), {}, "screenshot_dir");
    if (!stored || stored->isEmpty())
        return GnomeTools::picturesOrHome();
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
    return GnomeTools::picturesOrHome();
}

// grim and its wrapper scripts: the environment and the user's folders.

Folder grimFolder(const Folder &)
{
    if (const Folder screenshots = UserDirectories::folder(u"SCREENSHOTS"_s))
        return screenshots;
    for (const char *name : {"XDG_SCREENSHOTS_DIR", "HYPRSHOT_DIR", "GRIM_DEFAULT_DIR"}) {
        if (const QString path = qEnvironmentVariable(name); !path.isEmpty())
            return UserDirectories::ofThisMachine(path);
    }
    return UserDirectories::folder(u"PICTURES"_s);
}

Commands storeGrimFolder(const QString &path)
{
    UserDirectories::store(u"SCREENSHOTS"_s, path);
    return {};
}

// niri takes screenshots itself.

Folder niriFolder(const Folder &)
{
    return NiriSettings::folder();
}

// An unknown desktop: the user's folder for screenshots, if one is set.

Folder saidFolder(const Folder &)
{
    if (const Folder screenshots = UserDirectories::folder(u"SCREENSHOTS"_s))
        return screenshots;
    return UserDirectories::ofThisMachine(qEnvironmentVariable("XDG_SCREENSHOTS_DIR"));
}

// Tools that belong to no particular desktop, if the user has set a folder in them.

template <const IniTool &tool>
QString iniFile()
{
    return tool.file();
}

template <const IniTool &tool>
Folder iniFolder(const Folder &)
{
    return tool.folder();
}

template <const IniTool &tool>
Commands storeIniFolder(const QString &path)
{
    tool.storeFolder(path);
    return {};
}

/// By default it does not save what is copied.
Commands flameshotSavesAtOnce()
{
    IniTools::flameshot.setOn("saveAfterCopy");
    return {};
}

constexpr FollowedSetting::Name noGSetting = {};
constexpr auto fixed = ScreenshotTool::Key::SavesInFixedFolder;
constexpr auto chosen = ScreenshotTool::Key::SavesInChosenFolder;

constexpr ScreenshotTool flameshot = {chosen,
                                      iniFile<IniTools::flameshot>,
                                      noGSetting,
                                      iniFolder<IniTools::flameshot>,
                                      unknownFolder,
                                      storeIniFolder<IniTools::flameshot>,
                                      flameshotSavesAtOnce};
constexpr ScreenshotTool ksnip = {
    chosen,        iniFile<IniTools::ksnip>,        noGSetting, iniFolder<IniTools::ksnip>,
    unknownFolder, storeIniFolder<IniTools::ksnip>, nothing};
constexpr ScreenshotTool screengrab = {chosen,        iniFile<IniTools::screengrab>,
                                       noGSetting,    iniFolder<IniTools::screengrab>,
                                       unknownFolder, storeIniFolder<IniTools::screengrab>,
                                       nothing};
constexpr ScreenshotTool said = {chosen,        noFile,    noGSetting, saidFolder,
                                 unknownFolder, noSetting, nothing};

constexpr ScreenshotTool cinnamonTools[] = {
    {chosen, noFile, GnomeTools::gnomeScreenshotSetting, GnomeTools::gnomeScreenshotFolder,
     GnomeTools::picturesOrHome, GnomeTools::storeGnomeScreenshotFolder, nothing}};
constexpr ScreenshotTool cosmicTools[] = {
    {fixed, noFile, noGSetting, cosmicFolder, unknownFolder, noSetting, nothing}};
constexpr ScreenshotTool elementaryTools[] = {{chosen, noFile, GnomeTools::elementarySetting,
                                               GnomeTools::elementaryFolder, unknownFolder,
                                               GnomeTools::storeElementaryFolder, nothing}};
constexpr ScreenshotTool gnomeTools[] = {
    {fixed, GnomeTools::gnomeShellPath, GnomeTools::gnomeScreenshotSetting, GnomeTools::gnomeFolder,
     GnomeTools::gnomeShellFolder, GnomeTools::storeGnomeScreenshotFolder, nothing}};
constexpr ScreenshotTool kdeTools[] = {
    {chosen, SpectacleSettings::file, noGSetting, spectacleFolder, unknownFolder,
     SpectacleSettings::storeFolder, SpectacleSettings::saveAtOnce}};
constexpr ScreenshotTool lxqtTools[] = {screengrab, said, flameshot, ksnip};
constexpr ScreenshotTool mateTools[] = {{chosen, noFile, GnomeTools::mateSetting,
                                         GnomeTools::mateFolder, GnomeTools::desktopFolder,
                                         GnomeTools::storeMateFolder, nothing}};
constexpr ScreenshotTool niriTools[] = {
    {fixed, NiriSettings::file, noGSetting, niriFolder, unknownFolder, noSetting, nothing}};
constexpr ScreenshotTool wlrootsTools[] = {
    {chosen, noFile, noGSetting, grimFolder, unknownFolder, storeGrimFolder, nothing},
    flameshot,
    ksnip};
constexpr ScreenshotTool xfceTools[] = {{chosen, xfceFile, noGSetting, xfceFolder,
                                         GnomeTools::picturesOrHome, storeXfceFolder, nothing}};

/// LXDE, Deepin, i3, Openbox alone, an unset desktop.
constexpr ScreenshotTool otherTools[] = {said, flameshot, ksnip, screengrab};

struct Desktop {
    std::string_view name; ///< in XDG_CURRENT_DESKTOP, in lower case
    std::span<const ScreenshotTool> tools;
};

/// To support another desktop, add a line.
constexpr Desktop desktops[] = {
    {"cinnamon", cinnamonTools}, {"cosmic", cosmicTools},       {"dwl", wlrootsTools},
    {"gnome", gnomeTools},       {"hyprland", wlrootsTools},    {"kde", kdeTools},
    {"labwc", wlrootsTools},     {"lxqt", lxqtTools},           {"mate", mateTools},
    {"niri", niriTools},         {"pantheon", elementaryTools}, {"river", wlrootsTools},
    {"sway", wlrootsTools},      {"swayfx", wlrootsTools},      {"unity", cinnamonTools},
    {"wayfire", wlrootsTools},   {"wlroots", wlrootsTools},     {"x-cinnamon", cinnamonTools},
    {"xfce", xfceTools},
};

} // namespace

namespace ScreenshotTools
{

std::span<const ScreenshotTool> toolsOf(const QString &running)
{
    const QStringList names = running.toLower().split(u':', Qt::SkipEmptyParts);
    for (const QString &name : names) {
        for (const Desktop &desktop : desktops) {
            if (desktop.name == name.toStdString())
                return desktop.tools;
        }
    }
    return otherTools;
}

} // namespace ScreenshotTools
