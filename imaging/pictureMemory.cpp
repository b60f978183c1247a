// SPDX-License-Identifier: MIT
#include "imaging/pictureMemory.h"

#include "core/largeMemory.h"

#include <cstdlib>

namespace
{

/// In bytes: three large pages, so that the unused rest of the last one costs at most a third more.
constexpr std::size_t worthLargePages = std::size_t(6) << 20;

} // namespace

std::shared_ptr<unsigned char> allocatePictureMemory(std::size_t bytes)
{
    if (bytes >= worthLargePages)
        return allocateLargeMemory(bytes);
    auto *const memory = static_cast<unsigned char *>(std::malloc(bytes));
    return memory ? std::shared_ptr<unsigned char>(memory, &std::free) : nullptr;
}

QImage pictureIn(const std::shared_ptr<unsigned char> &memory, QSize size, QImage::Format format)
{
    using Memory = std::shared_ptr<unsigned char>;
    auto kept = std::make_unique<Memory>(memory);
    const QImage picture(
        memory.get(), size.width(), size.height(), qsizetype(4) * size.width(), format,
        [](void *pointer) { delete static_cast<Memory *>(pointer); }, kept.get());
    if (!picture.isNull())
        static_cast<void>(kept.release()); // a null picture would not clean up
    return picture;
}
