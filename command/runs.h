// SPDX-License-Identifier: MIT
#pragma once

#include "command/CommandOptions.h"
#include "command/Console.h"

/// The command's modes, one function each. Each returns the exit status.
namespace Runs
{

/// Names pictures, or only says how they would be named.
int name(const CommandOptions &options, Console &console);

/// Prints the text of pictures.
int text(const CommandOptions &options, Console &console);

/// Takes back what was renamed last.
int undo(const CommandOptions &options, Console &console);

/// Prints the paths of screenshots that hold words, among those that the program remembers.
int find(const CommandOptions &options, Console &console);

} // namespace Runs
