// SPDX-License-Identifier: MIT
#pragma once

#include <system_error>

#include <sys/stat.h>

/// Copies a regular file or a link to a destination, on any file system, that must not exist
/// (`std::errc::file_exists`). The copy appears complete, flushed to the disk and with the
/// original's modification time, permissions and, if the other file system can hold them, extended
/// attributes. On failure it does not appear at all. Anything but a file or link gives
/// `std::errc::cross_device_link`.
///
/// @param original what was copied, on success
/// @param copy what it was copied to, on success
std::error_code copyFile(const char *source, const char *destination, struct stat *original,
                         struct stat *copy);
