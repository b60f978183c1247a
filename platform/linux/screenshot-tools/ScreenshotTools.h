// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ScreenshotPreferences.h"
#include "platform/linux/screenshot-tools/FollowedSetting.h"

#include <QList>
#include <QString>

#include <optional>
#include <span>

/// What is known about a screenshot tool. The functions read the tool's settings on each call. Any
/// thread.
struct ScreenshotTool {
    /// What happens to screenshots taken with the key after storeFolder() was called.
    enum class Key { SavesInChosenFolder, SavesInFixedFolder };
    Key key;

    /// The file whose changes may move the folder, or a folder that does so by appearing or
    /// disappearing; empty when there is none.
    QString (*file)();

    /// The GSettings key that names the folder; without a schema when there is none.
    FollowedSetting::Name setting;

    /// Where the tool saves; absent when that is not a folder of this machine, and when the tool
    /// would ask.
    /// @param setting the value of `setting`; absent when its schema is not installed
    std::optional<QString> (*folder)(const std::optional<QString> &setting);

    /// Where the tool saves when its settings name no existing folder; absent when unknown.
    std::optional<QString> (*usualFolder)();

    /// Makes the tool save there, and returns the commands to run for that. Does nothing when the
    /// tool has no such setting. Don't call it when the schema of `setting` is not installed.
    QList<SystemCommand> (*storeFolder)(const QString &path);

    /// Makes the tool save every screenshot at once; otherwise as above.
    QList<SystemCommand> (*saveAtOnce)();
};

namespace ScreenshotTools
{

/// The tools of the first known desktop in `running`, else those that may be on any desktop; the
/// first one that reports a folder counts.
/// @param running in the form of XDG_CURRENT_DESKTOP: "ubuntu:GNOME"
std::span<const ScreenshotTool> toolsOf(const QString &running);

} // namespace ScreenshotTools
