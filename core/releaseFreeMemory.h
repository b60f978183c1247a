// SPDX-License-Identifier: MIT
#pragma once

/// Returns to the system the freed memory that the allocator has kept. For use after work that
/// needed much memory; takes some milliseconds. Any thread.
void releaseFreeMemory();

/// Drops the program's own code and its libraries from memory. What is still used comes back page
/// by page from the system's file cache: about a millisecond in all. For a program that will be
/// idle for a long time. Any thread.
void releaseCode();

/// Makes the allocator keep little freed memory from now on. By default it keeps up to twice the
/// size of the largest picture freed. Called once at startup; any thread.
void keepLittleFreeMemory();
