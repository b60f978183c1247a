// SPDX-License-Identifier: MIT
#pragma once

/// Returns freed memory that the allocator has kept to the system. For the end of work that needed
/// much memory; takes some milliseconds. Any thread.
void releaseFreeMemory();

/// Lets go of the program's own code and that of its libraries in memory. What is still used comes
/// back by itself, page by page, from the system's cache of files: a millisecond or so in all. For
/// a program that will rest for long. Any thread.
void releaseCode();

/// Makes the allocator keep little freed memory from now on. By default it keeps up to twice the
/// largest picture that was freed. Called once at the start; any thread.
void keepLittleFreeMemory();
