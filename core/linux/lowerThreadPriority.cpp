// SPDX-License-Identifier: MIT
#include "core/lowerThreadPriority.h"

#include <sys/resource.h>

namespace
{

/// About a tenth of an ordinary thread's share. With SCHED_IDLE, a name would have to wait for a
/// running compilation to end.
constexpr int niceness = 10;

} // namespace

void lowerThreadPriority()
{
    // On Linux, unlike in POSIX, 0 means the calling thread, not the whole process.
    ::setpriority(PRIO_PROCESS, 0, niceness);
}
