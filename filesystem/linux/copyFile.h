#pragma once

#include <system_error>

#include <sys/stat.h>

/// Copies a regular file or a link to a destination, on whatever file system, that must not exist
/// (`std::errc::file_exists`). The copy appears there whole, on the disk and with the original's
/// modification time, permissions and, as far as the other file system can hold them, extended
/// attributes; or not at all, whatever happens meanwhile. What is neither file nor link gives
/// `std::errc::cross_device_link`.
///
/// @param original what was copied, on success
/// @param copy what it was copied to, on success
std::error_code copyFile(const char *source, const char *destination, struct stat *original,
                         struct stat *copy);
