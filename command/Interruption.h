// SPDX-License-Identifier: MIT
#pragma once

/// Handles Ctrl+C and similar signals: the first one asks the command to finish the pictures in
/// progress, the second one ends it at once.
namespace Interruption
{

/// Installs the handlers. Call it once, before threads are started. A signal that is already
/// ignored (nohup) stays ignored.
void expect();

/// The signal that was received; 0 if there was none. Any thread.
int signal();

} // namespace Interruption
