// SPDX-License-Identifier: MIT
#include "core/idleThreadPriority.h"

#include <sched.h>
#include <sys/syscall.h>
#include <unistd.h>

void idleThreadPriority()
{
    // In both calls, 0 means the calling thread. The C library has no wrapper for the second one.
    const sched_param parameters = {};
    ::sched_setscheduler(0, SCHED_IDLE, &parameters);
    constexpr int thisThread = 1;
    constexpr int idleClass = 3 << 13;
    ::syscall(SYS_ioprio_set, thisThread, 0, idleClass);
}
