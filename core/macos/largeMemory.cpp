// SPDX-License-Identifier: MIT
#include "core/largeMemory.h"

#include <sys/mman.h>

/// An ordinary program cannot choose the page size here.
std::shared_ptr<unsigned char> allocateLargeMemory(std::size_t bytes)
{
    void *const start =
        ::mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANON, -1, 0);
    if (start == MAP_FAILED)
        return nullptr;
    return {static_cast<unsigned char *>(start),
            [start, bytes](unsigned char *) { ::munmap(start, bytes); }};
}
