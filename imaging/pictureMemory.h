// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include <cstddef>
#include <memory>

/// Memory for the pixels of one picture, in large pages when that pays; null when there is not
/// enough. Any thread.
std::shared_ptr<unsigned char> allocatePictureMemory(std::size_t bytes);

/// A picture of four bytes per pixel whose pixels are at the beginning of `memory`, which it keeps.
QImage pictureIn(const std::shared_ptr<unsigned char> &memory, QSize size, QImage::Format format);
