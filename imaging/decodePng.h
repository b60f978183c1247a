// SPDX-License-Identifier: MIT
#pragma once

class PictureSink;
class QIODevice;

/// Decodes a PNG file of any kind from the device's position on, at eight bits per channel. Pixels
/// only: colour profile and texts are skipped. False when the file is broken, truncated or refused
/// by the sink. Any thread.
bool decodePng(QIODevice &file, PictureSink &sink);
