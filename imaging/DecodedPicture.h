// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

/// What is held of a picture. All images are RGB32, or ARGB32_Premultiplied where something is
/// transparent.
struct DecodedPicture {
    /// The upper part, as large as it is: all of the picture but for huge ones.
    QImage top;
    /// All of the picture, scaled down when it is huge; else the same image.
    QImage overview;

    bool isNull() const { return overview.isNull(); }

    qsizetype sizeInBytes() const
    {
        const bool isHuge = top.cacheKey() != overview.cacheKey();
        return overview.sizeInBytes() + (isHuge ? top.sizeInBytes() : 0);
    }
};

/// How much of a picture is held, in pixels. One that exceeds both is huge.
struct PictureLimits {
    qint64 top;
    qint64 overview;
};
