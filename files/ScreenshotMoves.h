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

/// Operations on a screenshot's file. A file that has replaced it is left alone, and the operation
/// fails with "no such file". When they return, the screenshot knows its new location. One at a
/// time, on any thread but the main one; all block.
namespace ScreenshotMoves
{

/// An empty file is about to be filled by its writer; `Filled` leaves it unchanged.
enum class Only { Filled, Any };
ScreenshotRename rename(Screenshot &screenshot, const QString &name, Only only);

struct Trashing {
    std::error_code error;
    /// Set if and only if there is no error.
    std::optional<TrashResult> result;
};
Trashing trash(Screenshot &screenshot, SystemTrash &systemTrash);

/// @return no error if the file is back at `action.before`
std::error_code undo(Screenshot &screenshot, SystemTrash &systemTrash,
                     const UndoableAction &action);

ClipboardWriter::Contents contents(Screenshot &screenshot, CopyBehavior behavior);

} // namespace ScreenshotMoves
