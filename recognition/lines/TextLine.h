// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

#include <algorithm>
#include <cstdlib>
#include <vector>

/// One line of text, or the part of it in one column. All positions and sizes are in the picture's
/// pixels.
struct TextLine {
    /// From the highest ascender to the lowest descender, from the first letter to the last.
    QRect box;
    /// The height of its letters: of a capital, or of the small letters where there is none.
    int letterHeight = 0;
    /// The narrowest gap between two words.
    double wordGap = 0;
    /// The words, from left to right.
    std::vector<QRect> words;
    /// The runs of letters between gaps that might be word gaps. A word consists of one or more.
    std::vector<QRect> parts;
    /// The share of the letters, by their widths, on one base line: near 1 when there are no
    /// descenders.
    double evenness = 0;
    /// Smaller lines within this one. When no word can be read in this line, it is a picture or a
    /// row of pictures, and these lines may be text on it or close to it.
    std::vector<TextLine> covered;
};

/// Whether both are at the same height, so that the left one is read first.
inline bool areSideBySide(const TextLine &first, const TextLine &second)
{
    return std::abs(first.box.center().y() - second.box.center().y()) <
           std::max(first.letterHeight, second.letterHeight) / 2;
}
