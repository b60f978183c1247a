// SPDX-License-Identifier: MIT
#include "recognition/ink/QuietRows.h"

#include <algorithm>
#include <cmath>

namespace
{

/// How far from the letters the quiet row may be, in heights of a letter.
constexpr double farthestRow = 0.4;

/// A pixel this dark or this light, relative to the ink, is not background.
constexpr float leastInk = 0.3F;

/// A row is quiet when at most this share of its pixels is not background. 99 of 100 lines of text
/// have less than half of that above and below; parts of textures have twice as much.
constexpr double quietShare = 0.15;

/// A row is full when at least this share of its pixels is not background. The dots above "ÄÖÜ"
/// take a third.
constexpr double fullShare = 0.5;

/// The share of the row's pixels, within the columns of the area, that are not background.
double inkShare(const QImage &picture, const QRect &area, const InkColours &colours, int y)
{
    if (area.isEmpty() || y < 0 || y >= picture.height())
        return 0;
    const auto *row = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
    const auto inked = std::count_if(row + area.left(), row + area.right() + 1, [&](QRgb pixel) {
        return std::abs(colours.depth(pixel)) > leastInk * colours.inkDepth();
    });
    return double(inked) / area.width();
}

} // namespace

bool standsBetweenQuietRows(const QImage &picture, const QRect &area, const InkColours &colours,
                            int letterHeight)
{
    const int reach = std::max(2, int(std::lround(farthestRow * letterHeight)));
    const auto isQuiet = [&](int y) { return inkShare(picture, area, colours, y) <= quietShare; };
    bool above = false;
    bool below = false;
    for (int distance = 0; distance <= reach && !(above && below); ++distance) {
        above = above || isQuiet(area.top() - distance);
        below = below || isQuiet(area.bottom() + distance);
    }
    return above && below;
}

QRect withoutFullRows(const QImage &picture, const QRect &reach, const QRect &area,
                      const InkColours &colours)
{
    const auto isFull = [&](int y) { return inkShare(picture, area, colours, y) >= fullShare; };
    QRect free = reach;
    free.setTop(area.top());
    free.setBottom(area.bottom());
    while (free.top() > reach.top() && !isFull(free.top() - 1))
        free.setTop(free.top() - 1);
    while (free.bottom() < reach.bottom() && !isFull(free.bottom() + 1))
        free.setBottom(free.bottom() + 1);
    return free;
}
