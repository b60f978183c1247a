// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

#include <cstddef>
#include <memory>

/// Memory for the pixels of one picture, in large pages where that pays; null when there is not so
/// much. Any thread.
std::shared_ptr<unsigned char> allocatePictureMemory(std::size_t bytes);

/// A picture of four bytes a pixel whose pixels lie at the beginning of `memory`, and which keeps
/// that.
QImage pictureIn(const std::shared_ptr<unsigned char> &memory, QSize size, QImage::Format format);
