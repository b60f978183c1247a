// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/Descriptor.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <sys/mman.h>
#include <unistd.h>

/// A file in memory with this content.
inline Descriptor memoryFile(const std::uint8_t *data, std::size_t size)
{
    Descriptor file(::memfd_create("fuzz", MFD_CLOEXEC));
    if (::write(file.number(), data, size) != ::ssize_t(size))
        std::abort();
    return file;
}
