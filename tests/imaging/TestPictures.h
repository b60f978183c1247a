// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QImage>
#include <QString>

/// Pictures that tests make for themselves.
namespace TestPictures
{

/// Four fields, red and green above blue and white: it looks different in every orientation.
QImage fourFields(QSize size);

/// Each pixel has a random colour: compression saves almost nothing.
QImage noise(QSize size);

/// The picture as a file of this format ("png", "jpeg", "tiff", "webp" or "heic").
QByteArray encoded(const QImage &image, const QString &format);

/// The same as "jpeg", "tiff" or "heic", stored lying on its left side with the orientation that
/// turns it upright.
QByteArray encodedLying(const QImage &image, const QString &format);

/// The parts of a PNG file. `kind` is the end of its header: depth, colour type, compression,
/// filtering, interlacing; `rows` are the stored rows, not yet compressed.
QByteArray pngChunk(const QByteArray &type, const QByteArray &data);
QByteArray pngHeader(quint32 width, quint32 height, const QByteArray &kind);
QByteArray pngData(const QByteArray &rows);

/// The file with these chunks and the final one.
QByteArray pngFile(const QByteArray &chunks);

/// A well-formed PNG file that claims this size and contains hardly any data.
QByteArray pngThatClaims(quint32 width, quint32 height);

/// Writes a whole new file; false when that fails.
bool write(const QString &path, const QByteArray &bytes);

/// Whether both show the same, apart from what a lossy format loses.
bool lookAlike(const QImage &one, const QImage &other);

} // namespace TestPictures
