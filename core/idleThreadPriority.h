// SPDX-License-Identifier: MIT
#pragma once

/// Lowers the calling thread's priority so far that it gets only processor and disk time that no
/// other thread wants. For work that nobody waits for: on a busy machine it may not advance at all.
/// If the system refuses, the priority stays as it is.
void idleThreadPriority();
