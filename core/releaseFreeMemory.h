// SPDX-License-Identifier: MIT
#pragma once

/// Returns freed memory that the allocator has kept to the system. For the end of work that needed
/// much memory; takes some milliseconds. Any thread.
void releaseFreeMemory();

/// Makes the allocator keep little freed memory from now on. By default it keeps up to twice the
/// largest picture that was freed. Called once at the start; any thread.
void keepLittleFreeMemory();
