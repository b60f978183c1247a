// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

/// What is kept of a picture. All images are RGB32, or ARGB32_Premultiplied when something is
/// transparent.
struct DecodedPicture {
    /// The upper part in full size: the whole picture unless it is huge.
    QImage top;
    /// The whole picture, scaled down when it is huge; else the same image.
    QImage overview;

    bool isNull() const { return overview.isNull(); }

    qsizetype sizeInBytes() const
    {
        const bool isHuge = top.cacheKey() != overview.cacheKey();
        return overview.sizeInBytes() + (isHuge ? top.sizeInBytes() : 0);
    }
};

/// How much of a picture is kept, in pixels. One that exceeds both is huge.
struct PictureLimits {
    qint64 top;
    qint64 overview;
};
