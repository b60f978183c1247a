// SPDX-License-Identifier: MIT
#include "recognition/ink/LinePicture.h"

#include "recognition/ink/InkColours.h"
#include "recognition/ink/LineReach.h"
#include "recognition/ink/QuietRows.h"
#include "recognition/lines/CheckBoxes.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <vector>

namespace
{

/// The least difference between ink and ground, of 255.
constexpr float leastDepth = 16;

/// Around and between letters the background is bare: at least this share of the area has less than
/// this depth of ink. Real text has two thirds; a texture has no such background.
constexpr double leastBareShare = 0.4;
constexpr float bareDepth = 0.12F;

/// Weaker ink is drawn as dark as the strongest of the line, down to this share of it: coloured
/// names in a terminal, a greyed-out word.
constexpr float weakestInk = 0.3F;

/// How far to each side the ink counts as equally strong, in heights of the line.
constexpr double inkReach = 0.4;

/// For each column, the depth that is drawn black: that of the deepest ink near it.
std::vector<float> blackDepths(const std::vector<float> &depths, QSize size, float black)
{
    std::vector<float> deepest(std::size_t(size.width()), weakestInk * black);
    for (std::size_t index = 0; index < depths.size(); ++index) {
        float &column = deepest[index % deepest.size()];
        column = std::max(column, std::min(depths[index], black));
    }
    const int reach = std::max(1, int(std::lround(inkReach * size.height())));
    std::vector<float> near(deepest.size());
    for (int x = 0; x < size.width(); ++x) {
        near[std::size_t(x)] =
            *std::max_element(deepest.begin() + std::max(0, x - reach),
                              deepest.begin() + std::min(size.width(), x + reach + 1));
    }
    return near;
}

/// How much of the picture above and below the letters is included, in heights of a letter, for
/// accents and commas.
constexpr double reachAbove = 0.3;
constexpr double reachBelow = 0.15;

/// The height in pixels of the lines that the engine's models take. A picture of this height need
/// not be scaled.
constexpr int modelHeight = 36;

/// The white margin, in heights of a letter. With half a letter at the sides, one word in ten came
/// out wrong that is right with this. More margin above makes the letters smaller and the engine
/// faster: 0.35 instead of 0.2 saved a tenth of the time on 144 pages, one of which lost its second
/// word.
constexpr double sideMargin = 0.12;
constexpr double upperMargin = 0.35;

/// Centres the line in a white picture of the model's height.
QImage framed(const QImage &line, int side)
{
    QImage frame(line.width() + 2 * side, modelHeight, QImage::Format_Grayscale8);
    frame.fill(Qt::white);
    const int above = (modelHeight - line.height()) / 2;
    for (int y = 0; y < line.height(); ++y) {
        std::memcpy(frame.scanLine(y + above) + side, line.constScanLine(y),
                    std::size_t(line.width()));
    }
    return frame;
}

std::vector<float> depthsOf(const QImage &picture, const QRect &area, const InkColours &colours)
{
    std::vector<float> depths;
    depths.reserve(std::size_t(area.width()) * std::size_t(area.height()));
    for (int y = area.top(); y <= area.bottom(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        for (int x = area.left(); x <= area.right(); ++x)
            depths.push_back(colours.depth(row[x]));
    }
    return depths;
}

/// Draws each pixel on white, as dark as it is deep in the ink.
QImage inkPicture(const std::vector<float> &depths, QSize size, float black)
{
    if (black < leastDepth)
        return {};
    const auto bare = std::count_if(depths.begin(), depths.end(),
                                    [&](float depth) { return depth < bareDepth * black; });
    if (double(bare) < leastBareShare * double(depths.size()))
        return {};
    QImage ink(size, QImage::Format_Grayscale8);
    const std::vector<float> blacks = blackDepths(depths, size, black);
    auto depth = depths.cbegin();
    for (int y = 0; y < size.height(); ++y) {
        std::uint8_t *row = ink.scanLine(y);
        for (int x = 0; x < size.width(); ++x)
            row[x] = std::uint8_t(255.0F *
                                  (1 - std::clamp(*depth++ / blacks[std::size_t(x)], 0.0F, 1.0F)));
    }
    return ink;
}

} // namespace

LinePicture linePicture(const QImage &picture, const QRect &area, const TextLine &line,
                        int leftmost)
{
    const int letterHeight = line.letterHeight;
    const auto above = int(std::lround(reachAbove * letterHeight));
    const auto below = int(std::lround(reachBelow * letterHeight));
    const QRect seen = area.adjusted(-1, -above, 1, below) & picture.rect();
    if (seen.isEmpty())
        return {};
    const InkColours colours(picture, seen);
    if (!standsBetweenQuietRows(picture, area & picture.rect(), colours, letterHeight))
        return {};
    const QRect free = withoutFullRows(picture, seen, area & picture.rect(), colours);
    const QRect words = withWholeWords(picture, free, colours, line, leftmost);
    const QRect whole = withoutCheckBox(picture, words, colours, line);
    const QImage ink =
        inkPicture(depthsOf(picture, whole, colours), whole.size(), colours.inkDepth());
    if (ink.isNull())
        return {};
    const double scale = modelHeight / (whole.height() + 2 * upperMargin * letterHeight);
    const QImage scaled = ink.scaled(std::max(1, int(std::lround(whole.width() * scale))),
                                     std::max(1, int(std::lround(whole.height() * scale))),
                                     Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                              .convertToFormat(QImage::Format_Grayscale8);
    return {framed(scaled, int(std::lround(sideMargin * letterHeight * scale))), whole};
}
