// SPDX-License-Identifier: MIT
#include "recognition/engine/libraryThreads.h"

#include <dlfcn.h>

void keepLibraryOnThisThread()
{
    // The library brings the OpenMP runtime that it was built with. Linked here, the runtime of
    // this program's own compiler could be another one.
    using Setting = void (*)(int);
    static const auto setMostActiveLevels =
        reinterpret_cast<Setting>(::dlsym(RTLD_DEFAULT, "omp_set_max_active_levels"));
    if (setMostActiveLevels)
        setMostActiveLevels(0);
}
