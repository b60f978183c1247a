// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

#include <system_error>

/// The result of a move.
struct MovedFile {
    std::error_code error;
    /// Where the file is now; its old location if `error` is set.
    QUrl location;
};

/// Moves a file to `wanted` or, if that is taken, to the first free of "base-2.ext", "base-3.ext",
/// … beside it. If a name is taken at the last moment, the counter goes on: nothing is ever
/// replaced. Any thread; blocks.
MovedFile moveToFreeName(const QUrl &source, const QUrl &wanted);
