#pragma once

/// Gives memory that was freed, and that the allocator keeps for later, back to the system. For the
/// end of work that needed much of it; takes some milliseconds. Any thread.
void releaseFreeMemory();
