// SPDX-License-Identifier: MIT
#pragma once

#include <system_error>

/// Renames an entry within its own file system in one atomic step that refuses an existing
/// destination (`std::errc::file_exists`). When the file system has no such step, the error is one
/// for which lacksExclusiveRename() is true, and nothing has changed. Any thread.
std::error_code renameExclusively(const char *source, const char *destination);

/// Whether an error of renameExclusively() means that the system or the file system has no
/// exclusive rename.
bool lacksExclusiveRename(const std::error_code &error);
