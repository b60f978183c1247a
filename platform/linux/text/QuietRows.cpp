#include "platform/linux/text/QuietRows.h"

#include <algorithm>
#include <cmath>

namespace
{

/// How far from the letters the quiet row may be, in their heights.
constexpr double farthestRow = 0.4;

/// A pixel is no ground from this share of the ink's depth on, to either side.
constexpr float leastInk = 0.3F;

/// A quiet row's greatest share of such pixels: 99 of 100 lines of text have less than half of it,
/// parts of textures twice as much.
constexpr double quietShare = 0.15;

bool isQuiet(const QImage &picture, const QRect &area, const InkColours &colours, int y)
{
    if (y < 0 || y >= picture.height())
        return true;
    const auto *row = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
    const auto inked = std::count_if(row + area.left(), row + area.right() + 1, [&](QRgb pixel) {
        return std::abs(colours.depth(pixel)) > leastInk * colours.inkDepth();
    });
    return double(inked) <= quietShare * area.width();
}

} // namespace

bool standsBetweenQuietRows(const QImage &picture, const QRect &area, const InkColours &colours,
                            int letterHeight)
{
    const int reach = std::max(2, int(std::lround(farthestRow * letterHeight)));
    bool above = false;
    bool below = false;
    for (int distance = 0; distance <= reach && !(above && below); ++distance) {
        above = above || isQuiet(picture, area, colours, area.top() - distance);
        below = below || isQuiet(picture, area, colours, area.bottom() + distance);
    }
    return above && below;
}
