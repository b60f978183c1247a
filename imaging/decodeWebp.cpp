// SPDX-License-Identifier: MIT
#include "imaging/decodeWebp.h"

#include "imaging/PictureSink.h"

#include <QImageReader>

#include <algorithm>

namespace
{

/// What the reader holds per pixel: its picture, and what the library unpacks it from.
constexpr qint64 decoderPixelBytes = 8;

} // namespace

bool decodeWebp(QIODevice &file, PictureSink &sink)
{
    QImageReader reader(&file, "webp");
    reader.setAutoDetectImageFormat(false);
    const QSize size = reader.size();
    const qint64 pixels = qint64(size.width()) * size.height();
    if (!sink.begin({size, PictureSink::Alpha::Straight}, pixels * decoderPixelBytes + file.size()))
        return false;
    const QImage picture = reader.read().convertToFormat(QImage::Format_ARGB32);
    if (picture.size() != size)
        return false;
    for (int y = 0; y < size.height(); ++y) {
        std::copy_n(reinterpret_cast<const QRgb *>(picture.constScanLine(y)), size.width(),
                    sink.row(y));
        sink.finishRow(y);
    }
    return true;
}
