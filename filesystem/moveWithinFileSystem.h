// SPDX-License-Identifier: MIT
#pragma once

#include <system_error>

/// Renames a file, a link or a folder within its own file system and never overwrites: an existing
/// destination gives `std::errc::file_exists`, another file system `std::errc::cross_device_link`,
/// and both change nothing. Any thread; blocks.
std::error_code moveWithinFileSystem(const char *source, const char *destination);
