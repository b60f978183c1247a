#pragma once

#include "recognition/ink/InkColours.h"
#include "recognition/lines/TextLine.h"

/// The area of words of this line, extended to the left and to the right over what still belongs to
/// its first and last word: ink up to a gap. Letters whose edges are too faint or too flat to be
/// found with the others ("S", the bar of "T") are not cut off so. Where no gap comes within a few
/// letters, or a wall comes before it, that side stays. What is left of `leftmost` is another
/// area's, and so is the ground that follows it.
QRect withWholeWords(const QImage &picture, const QRect &area, const InkColours &colours,
                     const TextLine &line, int leftmost);
