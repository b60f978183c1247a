// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

#include <optional>
#include <system_error>

class SystemTrash;

/// Moving a screenshot to the user's trash in a way that can be undone.
namespace ScreenshotTrash
{

struct Result {
    std::error_code error;
    /// Where the file now lies, standardised; present exactly when there is no error.
    std::optional<QUrl> location;
};

/// Asks the desktop's trash first. Where that refuses, or does not say where the file went, the
/// file is moved to the folder ".Trash" of the user's home, under a free name. The log tells of a
/// refusal and of every use of that folder. On failure the file stands where it stood.
///
/// A missing file is `std::errc::no_such_file_or_directory` and not logged. Any thread; blocks.
Result move(SystemTrash &trash, const QUrl &url);

} // namespace ScreenshotTrash
