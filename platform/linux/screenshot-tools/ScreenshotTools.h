// SPDX-License-Identifier: MIT
#pragma once

#include "platform/ScreenshotPreferences.h"
#include "platform/linux/screenshot-tools/FollowedSetting.h"

#include <QList>
#include <QString>

#include <optional>
#include <span>
#include <string_view>

/// What is known of the screenshot tool of some desktops. Its functions read the tool's settings
/// afresh on every call. Any thread.
struct ScreenshotTool {
    /// The names in XDG_CURRENT_DESKTOP, in lower case.
    std::span<const std::string_view> desktops;

    /// The file in which the tool keeps its settings; empty when there is none.
    QString (*file)();

    /// The setting of GNOME's kind that names the folder; without a schema when there is none.
    FollowedSetting::Name setting;

    /// Where the tool saves; absent when that is no folder of this machine.
    /// @param setting the value of `setting`
    std::optional<QString> (*folder)(const std::optional<QString> &setting);

    /// Where the tool saves when its settings name no folder that is there; absent when unknown.
    std::optional<QString> (*usualFolder)();

    /// Makes the tool save there, and returns the commands that this takes. Nothing where the tool
    /// has no such setting.
    QList<SystemCommand> (*storeFolder)(const QString &path);

    /// Makes the tool save every screenshot at once; as above.
    QList<SystemCommand> (*saveAtOnce)();
};

namespace ScreenshotTools
{

/// The tool of the first desktop in `desktops` that is known, else that of a desktop about which
/// nothing is known.
/// @param desktops as XDG_CURRENT_DESKTOP has them: "ubuntu:GNOME"
const ScreenshotTool &toolOf(const QString &desktops);

} // namespace ScreenshotTools
