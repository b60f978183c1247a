// SPDX-License-Identifier: MIT
#pragma once

#include "recognition/lines/StrokeBlobs.h"

#include <QImage>

#include <functional>
#include <vector>

/// The picture in a format whose pixels can be compared channel by channel: 32 bits, red, green and
/// blue, opaque (transparent parts are black). Shares the pixels of `image` where it can, and keeps
/// them alive.
QImage opaquePicture(const QImage &image);

/// The blobs of the picture, of its half, of its quarter and so on, each in the pixels of its
/// level. One pass over the rows finds them all. `picture` is the result of `opaquePicture`. Ends
/// early, with the blobs of the rows so far, when `cancelled` returns true.
std::vector<std::vector<QRect>> blobsOnLevels(const QImage &picture, int levels,
                                              const std::function<bool()> &cancelled);
