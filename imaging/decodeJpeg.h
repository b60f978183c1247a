// SPDX-License-Identifier: MIT
#pragma once

class PictureSink;
class QIODevice;

/// Decodes a JPEG file from the device's position on, as it is stored: not turned upright. False
/// when the file is broken, truncated (which other decoders fill with grey) or refused by the sink;
/// what follows the picture's end does not matter. Any thread.
///
/// @param isTurned whether turning the picture will need its memory again
bool decodeJpeg(QIODevice &file, bool isTurned, PictureSink &sink);
