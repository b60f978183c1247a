// SPDX-License-Identifier: MIT
#include "files/renameScreenshot.h"

#include "files/moveToFreeName.h"
#include "filesystem/FileUrls.h"

ScreenshotRename renameScreenshot(const QUrl &file, const QString &name)
{
    const QUrl source = FileUrls::standardized(file);
    const QUrl wanted = FileUrls::child(FileUrls::parentFolder(source), name);
    if (wanted == source)
        return {ScreenshotRename::Outcome::Unchanged, std::nullopt, {}};
    const MovedFile moved = moveToFreeName(source, wanted);
    if (moved.error)
        return {ScreenshotRename::Outcome::Failed, std::nullopt, moved.error};
    return {ScreenshotRename::Outcome::Renamed, RenameResult{source, moved.location}, {}};
}
