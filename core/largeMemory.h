// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>

/// Zeroed memory of at least this many bytes, in large pages if the system has them. Writing the
/// pixels of a whole screen for the first time then takes a third of the time. Meant for blocks of
/// some megabytes. Null when there is not enough memory. Any thread.
std::shared_ptr<unsigned char> allocateLargeMemory(std::size_t bytes);
