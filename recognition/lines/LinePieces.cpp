// SPDX-License-Identifier: MIT
#include "recognition/lines/LinePieces.h"

#include <algorithm>
#include <iterator>

namespace
{

/// The narrowest and widest piece, in heights of a letter: one long word or three short ones. A
/// line without suitable gaps may have others.
constexpr double shortestPiece = 6;
constexpr double longestPiece = 16;

using Words = std::vector<QRect>;

/// Where the piece that begins with `first` ends: at the widest gap that makes it neither too short
/// nor too long, or else at the first gap that makes it long enough.
Words::const_iterator pieceEnd(Words::const_iterator first, Words::const_iterator last,
                               int letterHeight)
{
    const auto widthUntil = [&](Words::const_iterator end) {
        return std::prev(end)->right() - first->left() + 1;
    };
    if (widthUntil(last) <= longestPiece * letterHeight)
        return last;
    auto best = last;
    int widest = 0;
    for (auto end = std::next(first); end != last; ++end) {
        const int width = widthUntil(end);
        if (width < shortestPiece * letterHeight)
            continue;
        if (width > longestPiece * letterHeight)
            return best == last ? end : best;
        const int gap = end->left() - std::prev(end)->right() - 1;
        if (gap > widest) {
            best = end;
            widest = gap;
        }
    }
    return best;
}

/// The widest word that counts, in heights of a letter. A wider one must be several words whose
/// gaps were missed.
constexpr double widestWord = 24;

/// The line's words. A word that is too wide to be one is replaced by its parts.
Words cuttableWords(const TextLine &line)
{
    Words words;
    for (const QRect &word : line.words) {
        if (word.width() <= widestWord * line.letterHeight) {
            words.push_back(word);
            continue;
        }
        std::copy_if(line.parts.begin(), line.parts.end(), std::back_inserter(words),
                     [&](const QRect &part) { return word.contains(part); });
    }
    return words;
}

} // namespace

std::vector<QRect> piecesOf(const TextLine &line)
{
    const Words words = cuttableWords(line);
    std::vector<QRect> pieces;
    for (auto first = words.begin(); first != words.end();) {
        const auto end = pieceEnd(first, words.end(), line.letterHeight);
        pieces.emplace_back(QPoint(first->left(), line.box.top()),
                            QPoint(std::prev(end)->right(), line.box.bottom()));
        first = end;
    }
    return pieces;
}
