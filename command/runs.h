// SPDX-License-Identifier: MIT
#pragma once

#include "command/CommandOptions.h"
#include "command/Console.h"

/// The modes of the command, one function each. Each returns the exit status.
namespace Runs
{

/// Renames pictures, or only prints the names.
int name(const CommandOptions &options, Console &console);

/// Prints the text of pictures.
int text(const CommandOptions &options, Console &console);

/// Undoes the last renames.
int undo(const CommandOptions &options, Console &console);

/// Prints the paths of the indexed screenshots that contain the words.
int find(const CommandOptions &options, Console &console);

} // namespace Runs
