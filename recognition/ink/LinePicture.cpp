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

/// Ink that differs less than this from its ground, of 255, is none.
constexpr float leastDepth = 16;

/// Around and between letters the ground is bare: this share of the area, at least, is less than
/// this deep in the ink. A texture has no such ground; drawn and real text has two thirds.
constexpr double leastBareShare = 0.4;
constexpr float bareDepth = 0.12F;

/// Ink that is weaker than the line's strongest comes out as dark, down to this share of it: names
/// in a terminal's colours, a word that is greyed out.
constexpr float weakestInk = 0.3F;

/// Neighbourhood in which ink is equally strong, to each side, in heights of the line.
constexpr double inkReach = 0.4;

/// For each column the depth that is black there: that of the deepest ink near it.
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

/// The engine sees this much of the picture around the letters, in their heights: accents above,
/// commas below.
constexpr double reachAbove = 0.3;
constexpr double reachBelow = 0.15;

/// The height of the lines that the engine's network takes, in pixels, from its models: given
/// just that, it need not scale.
constexpr int modelHeight = 36;

/// White around the line, in heights of a letter. Half a letter at the sides makes one word in ten
/// wrong that is right with this. The more there is above, the smaller are the letters and the
/// quicker the engine: from 0.2 to 0.35 a tenth, on 144 pages, of which one lost its second word.
constexpr double sideMargin = 0.12;
constexpr double upperMargin = 0.35;

/// The line in the middle of a white picture of the model's height.
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

/// Dark on white: how deep each pixel is in the ink.
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
