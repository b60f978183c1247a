// SPDX-License-Identifier: MIT
#include "core/releaseFreeMemory.h"

#include <malloc/malloc.h>

void releaseFreeMemory()
{
    // From all zones, as much as possible.
    ::malloc_zone_pressure_relief(nullptr, 0);
}

/// The system does this itself.
void releaseCode() {}

/// The system's allocator has no such setting; releaseFreeMemory() returns what it keeps.
void keepLittleFreeMemory() {}
