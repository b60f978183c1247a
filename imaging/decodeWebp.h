// SPDX-License-Identifier: MIT
#pragma once

class PictureSink;
class QIODevice;

/// Decodes a WebP file by Qt's reader. False when the file is broken, cut short or refused by the
/// sink. Any thread.
bool decodeWebp(QIODevice &file, PictureSink &sink);
