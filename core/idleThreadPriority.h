// SPDX-License-Identifier: MIT
#pragma once

/// Gives the calling thread only what no other thread wants, of the processor and of the disk. For
/// work that nobody waits for: on a busy machine it may stand still. If the system refuses, the
/// priority stays as it is.
void idleThreadPriority();
