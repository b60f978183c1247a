// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ScreenshotPreferences.h"
#include "platform/linux/screenshot-tools/FollowedSetting.h"

#include <QList>
#include <QString>

#include <optional>
#include <span>

/// What is known of a screenshot tool. Its functions read the tool's settings afresh on every call.
/// Any thread.
struct ScreenshotTool {
    /// What becomes of screenshots that are taken with the key once storeFolder() was called.
    enum class Key { SavesWhereTold, SavesInFixedFolder };
    Key key;

    /// The file whose changes may move the folder, or a folder which does so by coming or going;
    /// empty when there is none.
    QString (*file)();

    /// The GSettings key that names the folder; without a schema when there is none.
    FollowedSetting::Name setting;

    /// Where the tool saves; absent when that is no folder of this machine, and where the tool
    /// would ask.
    /// @param setting the value of `setting`; absent where its schema is not installed
    std::optional<QString> (*folder)(const std::optional<QString> &setting);

    /// Where the tool saves when its settings name no existing folder; absent when unknown.
    std::optional<QString> (*usualFolder)();

    /// Makes the tool save there, and returns the commands that this takes. Nothing where the tool
    /// has no such setting. Not to be called where the schema of `setting` is not installed.
    QList<SystemCommand> (*storeFolder)(const QString &path);

    /// Makes the tool save every screenshot at once; otherwise as above.
    QList<SystemCommand> (*saveAtOnce)();
};

namespace ScreenshotTools
{

/// The tools of the first desktop in `running` that is known, else those of which any desktop may
/// have one; the first one that tells a folder counts.
/// @param running as XDG_CURRENT_DESKTOP has it: "ubuntu:GNOME"
std::span<const ScreenshotTool> toolsOf(const QString &running);

} // namespace ScreenshotTools
