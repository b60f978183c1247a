// SPDX-License-Identifier: MIT
#include "core/idleThreadPriority.h"

#include <pthread/qos.h>

void idleThreadPriority()
{
    ::pthread_set_qos_class_self_np(QOS_CLASS_BACKGROUND, 0);
}
