#pragma once

#include <QByteArray>
#include <QImage>

/// Whether the content is a picture of the family that decodeHeic() reads (HEIC, AVIF).
bool isHeic(const QByteArray &bytes);

/// The file's primary picture, upright. A null image when it can't be decoded or has more than
/// `maximumPixels`. Any thread; blocks.
QImage decodeHeic(const QByteArray &bytes, qint64 maximumPixels);
