// SPDX-License-Identifier: MIT
#pragma once

#include "recognition/ink/InkColours.h"

/// Whether there is a row without ink close above the letters in `area`, and one close below. This
/// is true of text, however tightly set, but not of parts of a texture.
bool standsBetweenQuietRows(const QImage &picture, const QRect &area, const InkColours &colours,
                            int letterHeight);

/// `reach`, which is a little higher than the letters in `area`, cut at the first rows above and
/// below that are full of ink: the edge of a picture, a frame, another line. Accents and commas do
/// not fill a row.
QRect withoutFullRows(const QImage &picture, const QRect &reach, const QRect &area,
                      const InkColours &colours);
