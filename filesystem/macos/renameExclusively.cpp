// SPDX-License-Identifier: MIT
#include "filesystem/renameExclusively.h"

#include "filesystem/Descriptor.h"

#include <cstdio>

std::error_code renameExclusively(const char *source, const char *destination)
{
    return ::renamex_np(source, destination, RENAME_EXCL) == 0 ? std::error_code() : lastError();
}

bool lacksExclusiveRename(const std::error_code &error)
{
    return error.value() == ENOTSUP || error.value() == EINVAL || error.value() == ENOSYS;
}
