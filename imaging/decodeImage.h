#pragma once

#include <QByteArray>
#include <QImage>
#include <QUrl>

/// Pictures of more pixels than this are not decoded: 64 million are 256 MB in memory, and twice
/// what the largest ordinary screens hold.
constexpr qint64 maximumDecodedPixels = 64'000'000;

/// Files of more bytes than this are not decoded: as many as the largest picture takes that is
/// stored without compression.
constexpr qint64 maximumPictureFileSize = 256'000'000;

/// Decodes a picture file: PNG, JPEG, TIFF, HEIC or WebP, judged by its content and not by
/// its name, and turned upright; of several pictures in one file the first or primary one. A null
/// image when the file can't be read, is none of these, is cut short or is too large. Any thread;
/// blocks.
QImage decodeImage(const QUrl &file);

/// The same from an open descriptor, which stays the caller's; its position does not matter.
QImage decodeImage(int descriptor);

/// The same from a picture file's bytes.
QImage decodeImage(const QByteArray &bytes);
