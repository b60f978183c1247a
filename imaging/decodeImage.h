// SPDX-License-Identifier: MIT
#pragma once

#include "imaging/DecodedPicture.h"
#include "imaging/PictureBudget.h"

#include <QByteArray>
#include <QImage>
#include <QUrl>

#include <memory>

// Picture files are PNG, JPEG, TIFF, HEIC or WebP, judged by their content and not by their names.
// Pictures are turned upright; of several in one file it is the first or primary one. There is
// none when the file can't be read, is none of these, is cut short or is too large
// (PictureSink::maximumPixels; HEIC, WebP and interlaced PNG, which are decoded whole, have to fit
// into the budget). Whatever the file says, decoding takes no more than its budget. Any thread;
// blocks.

/// Of a picture file on the clipboard, so many bytes may be held in memory; a larger one has to be
/// read when it is pasted.
constexpr qint64 maximumClipboardBytes = 64'000'000;

/// Files of more bytes than this are not decoded: to read them takes seconds.
constexpr qint64 maximumPictureFileSize = 2'000'000'000;

/// HEIC and WebP files are held in memory while they are decoded: of at most so many bytes.
constexpr qint64 maximumHeldFileSize = 64'000'000;

/// What is held of a screenshot: 40 million pixels are five 4K screens, 160 MB.
constexpr PictureLimits screenshotLimits{40'000'000, 4'000'000};

/// A file as it was decoded.
struct Decoding {
    DecodedPicture picture;
    /// More than 0 when there may be a picture, but not yet: so much room was lacking.
    qint64 lackingBytes = 0;
};

/// From an open descriptor, which stays the caller's; its position does not matter. The pictures
/// hold what they take of the budget.
Decoding decodePicture(int descriptor, const std::shared_ptr<PictureBudget> &budget,
                       const PictureLimits &limits = screenshotLimits);

/// All of the picture, scaled down where it has more than `maximumPastedPixels`; for those who
/// paste it. The budget is its own, PictureBudget::ofPasting.
constexpr qint64 maximumPastedPixels = 25'000'000;
QImage decodeImage(const QUrl &file);
QImage decodeImage(int descriptor);
QImage decodeImage(const QByteArray &bytes);
