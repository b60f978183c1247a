// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

#include <optional>
#include <system_error>

class SystemTrash;

/// Moves a screenshot to the user's trash in a way that can be undone.
namespace ScreenshotTrash
{

struct Result {
    std::error_code error;
    /// Where the file is now, standardised; set if and only if there is no error.
    std::optional<QUrl> location;
};

/// Tries the desktop's trash first. If that refuses, or does not report where the file went, the
/// file is moved to the folder ".Trash" in the user's home, under a free name. A refusal and every
/// use of that folder are logged. On failure the file stays where it was.
///
/// A missing file is `std::errc::no_such_file_or_directory` and is not logged. Any thread; blocks.
Result move(SystemTrash &trash, const QUrl &url);

} // namespace ScreenshotTrash
