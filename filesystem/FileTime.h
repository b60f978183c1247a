// SPDX-License-Identifier: MIT
#pragma once

#include <chrono>

#include <sys/stat.h>

/// A wall-clock time to the nanosecond, as file systems keep it. Times from a damaged file system
/// are clamped to the years 1684 to 2255, so that adding or subtracting minutes never overflows.
using FileTime = std::chrono::sys_time<std::chrono::nanoseconds>;

namespace FileTimes
{

/// Earlier than any date a file can have.
constexpr FileTime distantPast = FileTime::min();

FileTime now();

/// When the entry's content was last modified; for a symbolic link, the link's own date.
FileTime modified(const struct stat &status);

/// When the entry's status was last changed. A rename changes it too.
FileTime changed(const struct stat &status);

} // namespace FileTimes
