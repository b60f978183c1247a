// SPDX-License-Identifier: MIT
#pragma once

#include <system_error>

/// Gives an entry another name on its own file system in one atomic step that refuses a taken
/// destination (`std::errc::file_exists`). Where the file system has no such step, the error is one
/// for which lacksExclusiveRename() is true, and nothing has changed. Any thread.
std::error_code renameExclusively(const char *source, const char *destination);

/// Whether the system or the file system behind an error of renameExclusively() has no exclusive
/// rename.
bool lacksExclusiveRename(const std::error_code &error);
