// SPDX-License-Identifier: MIT
#pragma once

class PictureSink;
class QIODevice;

/// Decodes a WebP file with Qt's reader. False when the file is broken, truncated or refused by the
/// sink. Any thread.
bool decodeWebp(QIODevice &file, PictureSink &sink);
