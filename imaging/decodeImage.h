#pragma once

#include <QImage>
#include <QUrl>

/// Pictures of more pixels than this are not decoded: 64 million are 256 MB in memory, and twice
/// what the largest ordinary screens hold.
constexpr qint64 maximumDecodedPixels = 64'000'000;

/// Decodes a picture file: PNG, JPEG, TIFF, HEIC and whatever else is installed, judged by its
/// content and not by its name, and turned upright. A null image when the file can't be read, is
/// no picture, is cut short or is larger than `maximumDecodedPixels`. Any thread; blocks.
QImage decodeImage(const QUrl &file);

/// The same from an open descriptor, which stays the caller's; its position does not matter.
QImage decodeImage(int descriptor);
