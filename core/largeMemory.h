#pragma once

#include <cstddef>
#include <memory>

/// Memory of at least so many bytes, all zero, in large pages where the system has them: to touch
/// the pixels of a screen for the first time takes a third of the time then. For things of some
/// megabytes; null when there is not so much. Any thread.
std::shared_ptr<unsigned char> allocateLargeMemory(std::size_t bytes);
