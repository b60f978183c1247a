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
