#include "recognition/lines/LinePieces.h"

#include <algorithm>
#include <iterator>

namespace
{

/// A piece's widths in heights of a letter, where the line's gaps allow: one long word or three
/// short ones.
constexpr double shortestPiece = 6;
constexpr double longestPiece = 16;

using Words = std::vector<QRect>;

/// The end of the piece that begins with `first`: before the widest gap that makes it neither too
/// short nor too long, else before the first gap that makes it long enough.
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

/// No word that counts is wider, in heights of a letter: where no gap was taken for a word's, there
/// must be some all the same.
constexpr double widestWord = 24;

/// The line's words, and the parts of those that can't be one word.
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
