// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

#include <system_error>

/// What became of a move.
struct MovedFile {
    std::error_code error;
    /// Where the file is now; where it was when `error` is set.
    QUrl location;
};

/// Moves a file to `wanted` or, while something stands there, to the first free of "base-2.ext",
/// "base-3.ext", … beside it. Somebody who takes a name at the last moment only makes the counter
/// go on: nothing is ever replaced. Any thread; blocks.
MovedFile moveToFreeName(const QUrl &source, const QUrl &wanted);
