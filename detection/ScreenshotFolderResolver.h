// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/FileTime.h"
#include "platform/ScreenshotPreferences.h"

#include <QList>
#include <QUrl>

#include <optional>

/// Where the system saves screenshots, how to make it save them elsewhere, and which images of a
/// folder are the newest. Keeps nothing: each call asks the system and the folder afresh. Nothing
/// fails.
namespace ScreenshotFolderResolver
{

/// The folder that the system's preference names, with a leading tilde expanded, else the one of
/// the desktop's own screenshot tool, else defaultFolder(); standardised. It need not exist. Any
/// thread; blocks for the file system.
QUrl currentScreenshotFolder(const ScreenshotPreferences &preferences);

/// The home's "Desktop".
QUrl defaultFolder();

/// Makes the system save there, and waits until its tools have been told. A URL that is no local
/// one changes nothing. Main thread.
void setScreenshotFolder(ScreenshotPreferences &preferences, const QUrl &folder);

/// At most `limit` images, newest first, standardised. An image is any entry that is not hidden
/// and whose extension is "png", "jpg", "jpeg", "heic", "tiff" or "tif" in any case. Entries of
/// one date keep the order of the folder's listing. Empty for a folder that can't be listed. Any
/// thread; blocks for the file system.
QList<QUrl> recentScreenshotFiles(const QUrl &folder, int limit);

/// The same, but nothing for a folder that can't be listed.
std::optional<QList<QUrl>> readableScreenshotFiles(const QUrl &folder, int limit);

/// When the file's content was last modified, a symbolic link's own date; `FileTimes::distantPast`
/// where that can't be read. Any thread.
FileTime modificationDate(const QUrl &url);

} // namespace ScreenshotFolderResolver
