// SPDX-License-Identifier: MIT
#include "recognition/ink/LineReach.h"

#include <algorithm>
#include <cmath>

namespace
{

/// The narrowest gap that ends a word, in pixels. Neighbouring letters may be two pixels apart.
constexpr int leastWordEnd = 3;

/// How far a gap is looked for, in heights of a letter.
constexpr double farthestReach = 6;

/// A word and the side of a box around it are at least this many bare columns apart.
constexpr int wallGap = 2;

/// A pixel counts as ink from this share of the deepest ink.
constexpr float leastInk = 0.25F;

enum class Column { Bare, Inked, Wall };

Column columnAt(const QImage &picture, const QRect &area, const InkColours &colours, int x)
{
    int inked = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        if (std::abs(colours.depth(row[x])) >= leastInk * colours.inkDepth())
            ++inked;
    }
    if (inked == 0)
        return Column::Bare;
    return inked == area.height() ? Column::Wall : Column::Inked;
}

/// The last column of ink, searching outwards from the edge of the area; `step` is -1 or 1.
int reachFrom(int edge, int step, const QImage &picture, const QRect &area,
              const InkColours &colours, const TextLine &line)
{
    const int gap = std::max(leastWordEnd, int(std::lround(line.wordGap)));
    const int farthest = edge + step * int(std::lround(farthestReach * line.letterHeight));
    int reached = edge;
    int beforeGap = edge;
    for (int x = edge + step; x != farthest && x >= 0 && x < picture.width(); x += step) {
        const Column column = columnAt(picture, area, colours, x);
        const bool afterGap = std::abs(x - reached) > wallGap;
        if (column == Column::Wall)
            return afterGap ? reached : beforeGap;
        if (column == Column::Bare && std::abs(x - reached) >= gap)
            return reached;
        if (column == Column::Inked) {
            if (afterGap)
                beforeGap = reached;
            reached = x;
        }
    }
    return edge;
}

} // namespace

QRect withWholeWords(const QImage &picture, const QRect &area, const InkColours &colours,
                     const TextLine &line, int leftmost)
{
    QRect whole = area;
    whole.setLeft(reachFrom(area.left(), -1, picture, area, colours, line));
    whole.setRight(reachFrom(area.right(), 1, picture, area, colours, line));
    if (whole.left() >= leftmost)
        return whole;
    whole.setLeft(leftmost);
    while (whole.width() > 1 && columnAt(picture, area, colours, whole.left()) == Column::Bare)
        whole.setLeft(whole.left() + 1);
    return whole;
}
