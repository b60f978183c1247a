// SPDX-License-Identifier: MIT
#pragma once

#include "recognition/ink/InkColours.h"
#include "recognition/lines/TextLine.h"

/// `area`, an area with words of this line, widened on both sides to whole words: to the next gap
/// in the ink. This keeps letters whose edges are too faint or too flat to have been found ("S",
/// the bar of "T") from being cut off. A side without a gap within a few letters, or with a wall
/// before the gap, is left as it is. Columns left of `leftmost` belong to another area and are
/// never included.
QRect withWholeWords(const QImage &picture, const QRect &area, const InkColours &colours,
                     const TextLine &line, int leftmost);
