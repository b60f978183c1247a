// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

/// A screenshot tool that belongs to no particular desktop, with settings written by Qt. While no
/// folder is set, the tool asks for one each time, and this reports nothing. Read on each call. Any
/// thread; blocks on the file.
struct IniTool {
    const char *configFile;  ///< in the configuration folder
    const char *sandboxFile; ///< in the home folder, if the first one is missing; may be null
    const char *group;
    const char *key;

    QString file() const;

    /// The folder that is set. A relative path starts from the home folder. Placeholders for parts
    /// of the date give today's date.
    std::optional<QString> folder() const;

    /// Sets another folder, if one is set.
    void storeFolder(const QString &path) const;

    /// Turns a switch on, if the tool has been used.
    void setOn(const char *switchKey) const;
};

namespace IniTools
{

inline constexpr IniTool flameshot = {
    "flameshot/flameshot.ini", ".var/app/org.flameshot.Flameshot/config/flameshot/flameshot.ini",
    "General", "savePath"};
inline constexpr IniTool ksnip = {"ksnip/ksnip.conf",
                                  ".var/app/org.ksnip.ksnip/config/ksnip/ksnip.conf", "Application",
                                  "SaveDirectory"};
inline constexpr IniTool screengrab = {"screengrab/screengrab.conf", nullptr, "Base", "defDir"};

} // namespace IniTools
