// SPDX-License-Identifier: MIT
#include "core/idleThreadPriority.h"

#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

void idleThreadPriority()
{
    // Of the calling thread, as 0 says in both calls. The C library has no name for the second.
    const sched_param parameters = {};
    ::sched_setscheduler(0, SCHED_IDLE, &parameters);
    constexpr int thisThread = 1;
    constexpr int idleClass = 3 << 13;
    ::syscall(SYS_ioprio_set, thisThread, 0, idleClass);
}
