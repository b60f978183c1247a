// SPDX-License-Identifier: MIT
#pragma once

#include "files/UndoableAction.h"

#include <system_error>

class SystemTrash;

/// Undoes an action: moves the file from where the action left it back to where it was, and removes
/// the trash's record of it. Requires that the file exists and its old place is free. No other name
/// is tried, nothing is replaced, and a failure changes nothing. Any thread; blocks.
///
/// @return no error if the file is back at `action.before`
std::error_code reverseAction(SystemTrash &trash, const UndoableAction &action);
