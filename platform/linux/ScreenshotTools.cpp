#include "platform/linux/ScreenshotTools.h"

#include "platform/linux/KeyFile.h"
#include "platform/linux/Translations.h"
#include "platform/linux/UserDirectories.h"

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

QString configFile(const QString &name)
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + u'/' + name;
}

QString picturesOrHome()
{
    return UserDirectories::folder(QStringLiteral("PICTURES")).value_or(QDir::homePath());
}

/// The path that a setting names by a URL, or by itself; absent for a folder of another machine.
Folder localFolder(const QString &setting)
{
    if (setting.startsWith(u'/'))
        return setting;
    const QUrl url(setting);
    return url.isLocalFile() && url.host().isEmpty() ? Folder(url.toLocalFile()) : std::nullopt;
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

Folder gnomeFolder()
{
    return picturesOrHome() + u'/' + Translations::translated("gnome-shell", "Screenshots");
}

// KDE's Spectacle: its groups and keys have changed with its versions.

QString spectacleFile()
{
    return configFile(QStringLiteral("spectaclerc"));
}

bool isPlasma6()
{
    return qEnvironmentVariableIntValue("KDE_SESSION_VERSION") >= 6;
}

Folder spectacleFolder()
{
    struct Setting {
        const char *group;
        const char *key;
    };
    for (const auto &[group, key] :
         {Setting{"ImageSave", "imageSaveLocation"}, Setting{"Save", "defaultSaveLocation"},
          Setting{"General", "default-save-location"}}) {
        if (const auto stored = KeyFile::value(spectacleFile(), group, key);
            stored && !stored->isEmpty())
            return localFolder(*stored);
    }
    const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
    const auto frozenName =
        KeyFile::value(spectacleFile(), "ImageSave", "translatedScreenshotsFolder");
    if (frozenName && !frozenName->isEmpty())
        return QString(pictures + u'/' + *frozenName);
    return isPlasma6() ? QString(pictures + QStringLiteral("/Screenshots")) : pictures;
}

/// KDE's own tool writes the file with the lock that its programs respect.
Commands writeSpectacleSetting(const QString &group, const QString &key, const QString &value)
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

Commands storeSpectacleFolder(const QString &path)
{
    const QString url = QUrl::fromLocalFile(path + u'/').toString(QUrl::FullyEncoded);
    return isPlasma6() ? writeSpectacleSetting(QStringLiteral("ImageSave"),
                                               QStringLiteral("imageSaveLocation"), url)
                       : writeSpectacleSetting(QStringLiteral("Save"),
                                               QStringLiteral("defaultSaveLocation"), url);
}

/// As it comes, Spectacle shows a screenshot and saves none.
Commands makeSpectacleSaveAtOnce()
{
    return writeSpectacleSetting(QStringLiteral("General"), QStringLiteral("autoSaveImage"),
                                 QStringLiteral("true"));
}

// Xfce's screenshooter: a file of keys without groups.

QString xfceFile()
{
    return configFile(QStringLiteral("xfce4/xfce4-screenshooter"));
}

Folder xfceFolder()
{
    const auto stored = KeyFile::value(xfceFile(), {}, "screenshot_dir");
    return stored && !stored->isEmpty() ? localFolder(*stored) : picturesOrHome();
}

Commands storeXfceFolder(const QString &path)
{
    KeyFile::replaceLine(
        xfceFile(), "screenshot_dir=", "screenshot_dir=" + QUrl::fromLocalFile(path).toEncoded());
    return {};
}

// grim and the scripts around it: the environment and the user's folders.

Folder grimFolder()
{
    if (const Folder screenshots = UserDirectories::folder(QStringLiteral("SCREENSHOTS")))
        return screenshots;
    for (const char *name : {"XDG_SCREENSHOTS_DIR", "GRIM_DEFAULT_DIR"}) {
        if (const QString path = qEnvironmentVariable(name); !path.isEmpty())
            return localFolder(path);
    }
    return UserDirectories::folder(QStringLiteral("PICTURES"));
}

Commands storeGrimFolder(const QString &path)
{
    UserDirectories::store(QStringLiteral("SCREENSHOTS"), path);
    return {};
}

// A desktop that nothing is known of: where screenshots belong, if the user has said so.

Folder saidFolder()
{
    if (const Folder screenshots = UserDirectories::folder(QStringLiteral("SCREENSHOTS")))
        return screenshots;
    return localFolder(qEnvironmentVariable("XDG_SCREENSHOTS_DIR"));
}

constexpr std::array gnome = {"gnome"sv};
constexpr std::array kde = {"kde"sv};
constexpr std::array xfce = {"xfce"sv};
constexpr std::array grimDesktops = {"sway"sv,    "hyprland"sv, "river"sv,  "wlroots"sv,
                                     "wayfire"sv, "labwc"sv,    "swayfx"sv, "dwl"sv};

/// A desktop more is one line here.
constexpr std::array<ScreenshotTool, 4> tools = {{
    {gnome, gnomeFolder, noSetting, nothing},
    {kde, spectacleFolder, storeSpectacleFolder, makeSpectacleSaveAtOnce},
    {xfce, xfceFolder, storeXfceFolder, nothing},
    {grimDesktops, grimFolder, storeGrimFolder, nothing},
}};

constexpr ScreenshotTool unknownTool = {{}, saidFolder, noSetting, nothing};

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
