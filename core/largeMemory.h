// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <memory>

/// Zeroed memory of at least this many bytes, in large pages where the system has them. The first
/// write of a whole screen's pixels then takes a third of the time. Meant for blocks of some
/// megabytes. Null if there is not enough memory. Any thread.
std::shared_ptr<unsigned char> allocateLargeMemory(std::size_t bytes);
