#pragma once

#include "recognition/ink/InkColours.h"

/// Whether there is a row without ink close above the letters in `area`, and one close below: so
/// it is with a line of text, however tightly set, and not with a part of a texture.
bool standsBetweenQuietRows(const QImage &picture, const QRect &area, const InkColours &colours,
                            int letterHeight);

/// `reach`, which goes a little beyond the letters in `area`, up to the first row above and below
/// that is full of ink: the edge of a picture, a frame, another line. Accents and commas are not.
QRect withoutFullRows(const QImage &picture, const QRect &reach, const QRect &area,
                      const InkColours &colours);
