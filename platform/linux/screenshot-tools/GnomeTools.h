// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ScreenshotPreferences.h"
#include "platform/linux/screenshot-tools/FollowedSetting.h"

#include <QList>
#include <QString>

#include <optional>

/// The screenshot tools of GNOME and its relatives, which keep their folder in GSettings, or have
/// none. Any thread; blocks on files.
namespace GnomeTools
{

using Folder = std::optional<QString>;

inline constexpr FollowedSetting::Name gnomeScreenshotSetting = {"org.gnome.gnome-screenshot",
                                                                 "auto-save-directory"};
inline constexpr FollowedSetting::Name elementarySetting = {"io.elementary.screenshot",
                                                            "folder-dir"};
inline constexpr FollowedSetting::Name mateSetting = {"org.mate.screenshot", "last-save-directory"};

/// Never absent.
Folder picturesOrHome();
/// Absent when the user's folders do not include one.
Folder desktopFolder();

// Where each tool saves, by the value of its setting.
Folder gnomeScreenshotFolder(const Folder &setting);
Folder elementaryFolder(const Folder &setting);
Folder mateFolder(const Folder &setting);

/// GNOME Shell's own folder; gnome-screenshot's while that one does not exist.
Folder gnomeFolder(const Folder &gnomeScreenshotSetting);
/// GNOME Shell's own folder.
QString gnomeShellPath();
Folder gnomeShellFolder();

// The commands that make each tool save there.
QList<SystemCommand> storeGnomeScreenshotFolder(const QString &path);
QList<SystemCommand> storeElementaryFolder(const QString &path);
QList<SystemCommand> storeMateFolder(const QString &path);

} // namespace GnomeTools
