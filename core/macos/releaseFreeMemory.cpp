// SPDX-License-Identifier: MIT
#include "core/releaseFreeMemory.h"

#include <malloc/malloc.h>

void releaseFreeMemory()
{
    // Of all zones, as much as there is.
    ::malloc_zone_pressure_relief(nullptr, 0);
}

/// The system does so by itself.
void releaseCode() {}

/// The system's allocator has no such setting; releaseFreeMemory() gives back what it keeps.
void keepLittleFreeMemory() {}
