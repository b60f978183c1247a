// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

class PictureSink;
class QIODevice;

/// Whether a file that begins like this is a picture of the family that decodeHeic() reads (HEIC,
/// AVIF); some dozens of bytes tell.
bool isHeic(const QByteArray &beginning);

/// Decodes the file's primary picture, upright. False when the file is broken, cut short or refused
/// by the sink. Any thread.
bool decodeHeic(QIODevice &file, PictureSink &sink);
