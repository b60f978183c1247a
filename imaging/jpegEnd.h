#pragma once

#include <QByteArrayView>

/// Whether a JPEG stream reaches its end marker. Decoders fill what is missing of a stream that is
/// cut short with grey and call it a success. What follows the end (a second picture, a film) does
/// not matter.
bool reachesJpegEnd(QByteArrayView bytes);
