// SPDX-License-Identifier: MIT
#pragma once

class PictureSink;
class QIODevice;

/// Decodes a PNG file from the device's position on: any kind, eight bits a channel. Pixels only:
/// colour profile and texts are left out. False when the file is broken, cut short or refused by
/// the sink. Any thread.
bool decodePng(QIODevice &file, PictureSink &sink);
