// SPDX-License-Identifier: MIT
#pragma once

#include "files/UndoableAction.h"

#include <system_error>

class SystemTrash;

/// Takes an action back: moves the file from where the action left it to where it was before, and
/// out of the trash's own notes. Only when a file stands there and nothing stands where it was; no
/// other name is tried, nothing is replaced, and a failure changes nothing. Any thread; blocks.
///
/// @return none when the file is back at `action.before`.
std::error_code reverseAction(SystemTrash &trash, const UndoableAction &action);
