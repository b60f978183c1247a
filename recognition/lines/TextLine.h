#pragma once

#include <QRect>

#include <algorithm>
#include <cstdlib>
#include <vector>

/// One line of text, or the part of it that stands in one column, as it lies in the picture.
/// All in the picture's pixels.
struct TextLine {
    /// From the highest ascender to the lowest descender, from the first letter to the last.
    QRect box;
    /// The height of its letters: of a capital, or of the small letters where there is none.
    int letterHeight = 0;
    /// What stands this far from a word, at least, is no part of it.
    double wordGap = 0;
    /// The runs of letters between word gaps, left to right. What stands closer is one word.
    std::vector<QRect> words;
    /// The runs of letters between gaps that may be word gaps; words consist of them.
    std::vector<QRect> parts;
    /// The share of the letters, by their widths, that stand on one base: near 1 where there are
    /// no descenders.
    double evenness = 0;
    /// Smaller lines that lie in it: should not one word be read in this one, it is a picture, or
    /// pictures in a row, and these are what is written on it or close to it.
    std::vector<TextLine> covered;
};

/// Whether both stand at the same height, so that the left one is read first.
inline bool areSideBySide(const TextLine &first, const TextLine &second)
{
    return std::abs(first.box.center().y() - second.box.center().y()) <
           std::max(first.letterHeight, second.letterHeight) / 2;
}
