// SPDX-License-Identifier: MIT
#pragma once

#include "files/ClipboardWriter.h"
#include "files/TrashResult.h"
#include "files/UndoableAction.h"
#include "files/renameScreenshot.h"

#include <optional>
#include <system_error>

class Screenshot;
class SystemTrash;

/// What is done to a screenshot's file, and to no other: a file that has taken its place is left
/// alone, which counts as no such file. The screenshot knows its new place when these return. One
/// at a time, on a thread other than the main one; block.
namespace ScreenshotMoves
{

/// An empty file is one that somebody is about to fill: `Filled` leaves it as it is.
enum class Only { Filled, Any };
ScreenshotRename rename(Screenshot &screenshot, const QString &name, Only only);

struct Trashing {
    std::error_code error;
    /// Present exactly when there is no error.
    std::optional<TrashResult> result;
};
Trashing trash(Screenshot &screenshot, SystemTrash &systemTrash);

/// @return none when the file is back at `action.before`
std::error_code undo(Screenshot &screenshot, SystemTrash &systemTrash,
                     const UndoableAction &action);

ClipboardWriter::Contents contents(Screenshot &screenshot, CopyBehavior behavior);

} // namespace ScreenshotMoves
