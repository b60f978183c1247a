// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/FileTime.h"
#include "platform/ScreenshotPreferences.h"

#include <QList>
#include <QUrl>

#include <optional>

/// Where the system saves screenshots, how to make it save them elsewhere, and which images in a
/// folder are the newest. Stateless: each call reads the settings and the folder again. No function
/// fails.
namespace ScreenshotFolderResolver
{

/// The folder that the system's preference names, with a leading tilde expanded; else that of the
/// desktop's own screenshot tool; else defaultFolder(). Standardised; it need not exist. Any
/// thread; blocks for the file system.
QUrl currentScreenshotFolder(const ScreenshotPreferences &preferences);

/// The folder "Desktop" in the user's home.
QUrl defaultFolder();

/// Makes the system save to `folder`, and waits until its tools have been notified. A URL that is
/// not local changes nothing. Main thread.
void setScreenshotFolder(ScreenshotPreferences &preferences, const QUrl &folder);

/// At most `limit` images, newest first, standardised. An image is any entry that is not hidden and
/// whose extension is "png", "jpg", "jpeg", "heic", "tiff" or "tif" in any case. Entries with the
/// same date stay in the order of the folder's listing. Empty if the folder cannot be listed. Any
/// thread; blocks for the file system.
QList<QUrl> recentScreenshotFiles(const QUrl &folder, int limit);

/// The same, but nothing if the folder cannot be listed.
std::optional<QList<QUrl>> readableScreenshotFiles(const QUrl &folder, int limit);

/// When the file's content was last modified (for a symbolic link, the link's own date);
/// `FileTimes::distantPast` if that cannot be read. Any thread.
FileTime modificationDate(const QUrl &url);

} // namespace ScreenshotFolderResolver
