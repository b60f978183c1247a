// SPDX-License-Identifier: MIT
#include "platform/SystemWords.h"

QString SystemText::here() const
{
    return onLinux.toString();
}
