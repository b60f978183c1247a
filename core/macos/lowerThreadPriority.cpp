// SPDX-License-Identifier: MIT
#include "core/lowerThreadPriority.h"

#include <pthread/qos.h>

void lowerThreadPriority()
{
    ::pthread_set_qos_class_self_np(QOS_CLASS_UTILITY, 0);
}
