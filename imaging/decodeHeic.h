// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>

class PictureSink;
class QIODevice;

/// Whether a file with this beginning is a picture of the family that decodeHeic() reads (HEIC,
/// AVIF); a few dozen bytes are enough.
bool isHeic(const QByteArray &beginning);

/// Decodes the file's primary picture, upright. False when the file is broken, truncated or refused
/// by the sink. Any thread.
bool decodeHeic(QIODevice &file, PictureSink &sink);
