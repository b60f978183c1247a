// SPDX-License-Identifier: MIT
#include "filesystem/renameExclusively.h"

#include "filesystem/Descriptor.h"

#include <cstdio>
#include <fcntl.h>

std::error_code renameExclusively(const char *source, const char *destination)
{
    return ::renameat2(AT_FDCWD, source, AT_FDCWD, destination, RENAME_NOREPLACE) == 0
               ? std::error_code()
               : lastError();
}

bool lacksExclusiveRename(const std::error_code &error)
{
    return error.value() == EINVAL || error.value() == ENOSYS || error.value() == ENOTSUP;
}
