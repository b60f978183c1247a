#pragma once

#include <QByteArray>
#include <QImage>

/// Whether a file that begins like this is a picture of the family that decodeHeic() reads (HEIC,
/// AVIF); some dozens of bytes tell.
bool isHeic(const QByteArray &beginning);

/// The file's primary picture, upright. A null image when it can't be decoded or has more than
/// `maximumPixels`. Any thread; blocks.
QImage decodeHeic(const QByteArray &bytes, qint64 maximumPixels);
