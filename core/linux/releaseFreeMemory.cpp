// SPDX-License-Identifier: MIT
#include "core/releaseFreeMemory.h"

#include <cstdlib>

#ifdef __GLIBC__
#include <malloc.h>
#endif

void releaseFreeMemory()
{
#ifdef __GLIBC__
    ::malloc_trim(0);
#endif
}

void keepLittleFreeMemory()
{
#ifdef __GLIBC__
    constexpr int bytesKept = 1 << 20;
    ::mallopt(M_TRIM_THRESHOLD, bytesKept);
    ::mallopt(M_MMAP_THRESHOLD, bytesKept);
#endif
}
