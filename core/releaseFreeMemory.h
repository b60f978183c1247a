#pragma once

/// Gives memory that was freed, and that the allocator keeps for later, back to the system. For the
/// end of work that needed much of it; takes some milliseconds. Any thread.
void releaseFreeMemory();

/// Has the allocator keep no more than a little for later from now on: by itself it keeps as much
/// as twice the largest picture that was freed. Once at the start; any thread.
void keepLittleFreeMemory();
