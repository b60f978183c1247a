// SPDX-License-Identifier: MIT
#include "core/largeMemory.h"

#include <cstdint>
#include <sys/mman.h>

namespace
{

/// The size of a large page on desktop processors. A large page must be aligned to its own size.
constexpr std::size_t largePage = std::size_t(2) << 20;

constexpr std::size_t roundedUp(std::size_t bytes)
{
    return (bytes + largePage - 1) / largePage * largePage;
}

} // namespace

std::shared_ptr<unsigned char> allocateLargeMemory(std::size_t bytes)
{
    const std::size_t pages = roundedUp(bytes);
    const std::size_t mapped = pages + largePage;
    void *const start =
        ::mmap(nullptr, mapped, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (start == MAP_FAILED)
        return nullptr;
    auto *const aligned =
        reinterpret_cast<unsigned char *>(roundedUp(reinterpret_cast<std::uintptr_t>(start)));
    // If the system refuses, the pages are small and nothing else changes.
    ::madvise(aligned, pages, MADV_HUGEPAGE);
    return {aligned, [start, mapped](unsigned char *) { ::munmap(start, mapped); }};
}
