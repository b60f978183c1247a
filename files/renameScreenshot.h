// SPDX-License-Identifier: MIT
#pragma once

#include "files/RenameResult.h"

#include <QString>

#include <optional>
#include <system_error>

/// What became of a rename.
struct ScreenshotRename {
    enum class Outcome { Renamed, Unchanged, Failed };

    Outcome outcome = Outcome::Unchanged;
    /// Present exactly when the file was renamed.
    std::optional<RenameResult> result;
    /// Set exactly when it failed. The file stands where it stood.
    std::error_code error;
};

/// Renames a file to `name` (sanitised, not empty, without a folder) in its own folder. A taken
/// name gives way to "base-2.ext", "base-3.ext", …; a name that is the file's own changes nothing.
/// Nothing is logged and nothing is ever replaced. Any thread; blocks.
ScreenshotRename renameScreenshot(const QUrl &file, const QString &name);
