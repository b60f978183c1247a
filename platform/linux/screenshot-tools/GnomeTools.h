// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ScreenshotPreferences.h"
#include "platform/linux/screenshot-tools/FollowedSetting.h"

#include <QList>
#include <QString>

#include <optional>

/// The screenshot tools of GNOME and its relatives, which keep their folder in GNOME's kind of
/// settings, or have none. Any thread; blocks for files.
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
/// Absent where the user's folders name none.
Folder desktopFolder();

// Where each saves, by the value of its setting.
Folder gnomeScreenshotFolder(const Folder &setting);
Folder elementaryFolder(const Folder &setting);
Folder mateFolder(const Folder &setting);

/// GNOME Shell's own; gnome-screenshot's while that one is not there.
Folder gnomeFolder(const Folder &gnomeScreenshotSetting);
/// GNOME Shell's own.
QString gnomeShellPath();
Folder gnomeShellFolder();

// The commands that make each save there.
QList<SystemCommand> storeGnomeScreenshotFolder(const QString &path);
QList<SystemCommand> storeElementaryFolder(const QString &path);
QList<SystemCommand> storeMateFolder(const QString &path);

} // namespace GnomeTools
