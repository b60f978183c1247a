// SPDX-License-Identifier: MIT
#include "core/lowerThreadPriority.h"

#include <sys/resource.h>

namespace
{

/// About a tenth of an ordinary thread's share. SCHED_IDLE would make a name wait until somebody's
/// compilation has ended.
constexpr int niceness = 10;

} // namespace

void lowerThreadPriority()
{
    // On Linux, unlike in POSIX, 0 means the calling thread and not the whole process.
    ::setpriority(PRIO_PROCESS, 0, niceness);
}
