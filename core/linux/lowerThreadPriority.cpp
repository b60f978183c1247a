#include "core/lowerThreadPriority.h"

#include <sys/resource.h>

namespace
{

/// A tenth of an ordinary thread's share. (With SCHED_IDLE, a name would wait for the end of
/// somebody's compilation.)
constexpr int niceness = 10;

} // namespace

void lowerThreadPriority()
{
    // Here, unlike what POSIX says, 0 is the calling thread and not the whole process.
    ::setpriority(PRIO_PROCESS, 0, niceness);
}
