// SPDX-License-Identifier: MIT
#pragma once

#include <QImageIOHandler>

#include <optional>

class PictureSink;
class QIODevice;

/// Decodes the first picture of a TIFF file, as it is stored; returns what turns it upright.
/// Nothing when the file is broken, truncated or refused by the sink. Any thread.
std::optional<QImageIOHandler::Transformations> decodeTiff(QIODevice &file, PictureSink &sink);
