// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/DecodedPicture.h"
#include "imaging/PictureBudget.h"

#include <QByteArray>
#include <QImage>
#include <QUrl>

#include <memory>

// Picture files are PNG, JPEG, TIFF, HEIC or WebP, judged by their content, not by their names.
// Pictures are turned upright; of several in one file, the first or primary one counts. There is no
// picture when the file can't be read, is none of these, is truncated or is too large
// (PictureSink::maximumPixels; HEIC, WebP and interlaced PNG are decoded whole and have to fit into
// the budget). Whatever the file contains, decoding takes no more than its budget. Any thread;
// blocks.

/// The most bytes of a picture file that may be held in memory for the clipboard; a larger file is
/// read when it is pasted.
constexpr qint64 maximumClipboardBytes = 64'000'000;

/// In bytes. Larger files are not decoded, because reading them takes seconds.
constexpr qint64 maximumPictureFileSize = 2'000'000'000;

/// HEIC and WebP files are held in memory while they are decoded, up to this many bytes.
constexpr qint64 maximumHeldFileSize = 64'000'000;

/// What is kept of a screenshot: 40 million pixels are five 4K screens, 160 MB.
constexpr PictureLimits screenshotLimits{40'000'000, 4'000'000};

/// The result of decoding a file.
struct Decoding {
    DecodedPicture picture;
    /// More than 0 when there may be a picture later: this many bytes were lacking.
    qint64 lackingBytes = 0;
};

/// From an open descriptor, which stays the caller's; its position does not matter. The pictures
/// hold what they take of the budget.
Decoding decodePicture(int descriptor, const std::shared_ptr<PictureBudget> &budget,
                       const PictureLimits &limits = screenshotLimits);

/// The whole picture, scaled down when it has more than `maximumPastedPixels`; for pasting. The
/// budget is its own, PictureBudget::ofPasting.
constexpr qint64 maximumPastedPixels = 25'000'000;
QImage decodeImage(const QUrl &file);
QImage decodeImage(int descriptor);
QImage decodeImage(const QByteArray &bytes);
