// SPDX-License-Identifier: MIT
#include "core/releaseFreeMemory.h"

#include <cstdlib>
#include <link.h>
#include <sys/mman.h>
#include <unistd.h>

#ifdef __GLIBC__
#include <malloc.h>
#endif

void releaseFreeMemory()
{
#ifdef __GLIBC__
    ::malloc_trim(0);
#endif
}

namespace
{

/// Only releases read-only segments; the others hold data that the program has changed.
int releaseSegments(dl_phdr_info *library, size_t, void *)
{
    const auto pageSize = static_cast<uintptr_t>(::sysconf(_SC_PAGESIZE));
    for (int number = 0; number < library->dlpi_phnum; ++number) {
        const ElfW(Phdr) &segment = library->dlpi_phdr[number];
        if (segment.p_type != PT_LOAD || (segment.p_flags & PF_W))
            continue;
        const uintptr_t begin = library->dlpi_addr + segment.p_vaddr;
        const uintptr_t firstPage = begin & ~(pageSize - 1);
        ::madvise(reinterpret_cast<void *>(firstPage), begin + segment.p_memsz - firstPage,
                  MADV_DONTNEED);
    }
    return 0;
}

} // namespace

void releaseCode()
{
    ::dl_iterate_phdr(&releaseSegments, nullptr);
}

void keepLittleFreeMemory()
{
#ifdef __GLIBC__
    constexpr int bytesKept = 1 << 20;
    ::mallopt(M_TRIM_THRESHOLD, bytesKept);
    ::mallopt(M_MMAP_THRESHOLD, bytesKept);
#endif
}
