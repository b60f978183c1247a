// SPDX-License-Identifier: MIT
#pragma once

#include "files/RenameResult.h"

#include <QString>

#include <optional>
#include <system_error>

/// The result of a rename.
struct ScreenshotRename {
    enum class Outcome { Renamed, Unchanged, Failed };

    Outcome outcome = Outcome::Unchanged;
    /// Set if and only if the file was renamed.
    std::optional<RenameResult> result;
    /// Set if and only if the rename failed. Then the file stays where it was.
    std::error_code error;
};

/// Renames a file to `name` (sanitised, not empty, without a folder) in its own folder. If the name
/// is taken, it becomes "base-2.ext", "base-3.ext", …; the file's own name changes nothing. Nothing
/// is logged, and nothing is ever replaced. Any thread; blocks.
ScreenshotRename renameScreenshot(const QUrl &file, const QString &name);
