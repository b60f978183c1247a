// SPDX-License-Identifier: MIT
#pragma once

/// What Ctrl+C and its kind do: the first one asks the command to finish what it has in hand, the
/// second one ends it at once.
namespace Interruption
{

/// Called once, before threads are started. A signal that is ignored already (nohup) stays so.
void expect();

/// The signal that came; 0 when none has come. Any thread.
int signal();

} // namespace Interruption
