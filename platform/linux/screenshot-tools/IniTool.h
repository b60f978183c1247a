// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <optional>

/// A screenshot tool of no desktop in particular, whose settings Qt has written. Who has set no
/// folder in it is asked for a place each time, so it tells nothing then. Read afresh on every
/// call. Any thread; blocks for the file.
struct IniTool {
    const char *configFile;  ///< in the configuration folder
    const char *sandboxFile; ///< in the home folder, where the first one is missing; may be null
    const char *group;
    const char *key;

    QString file() const;

    /// The folder that is set. A path that begins nowhere is meant from the home folder. What
    /// stands for parts of the date is today's.
    std::optional<QString> folder() const;

    /// Sets another folder, where one is set.
    void storeFolder(const QString &path) const;

    /// Sets a switch, where the tool has been used.
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
