#pragma once

#include "platform/ScreenshotPreferences.h"

#include <QList>
#include <QString>

#include <optional>
#include <span>
#include <string_view>

/// What is known of the screenshot tool of some desktops. Its functions read the tool's settings
/// afresh on every call. Main thread.
struct ScreenshotTool {
    /// The names in XDG_CURRENT_DESKTOP, in lower case.
    std::span<const std::string_view> desktops;

    /// Where the tool saves; absent when that is no folder of this machine.
    std::optional<QString> (*folder)();

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
