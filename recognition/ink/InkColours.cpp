// SPDX-License-Identifier: MIT
#include "recognition/ink/InkColours.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

/// This share of the pixels is at least as deep as full ink.
constexpr double inkShare = 0.02;

} // namespace

InkColours::InkColours(const QImage &picture, const QRect &area)
{
    const std::vector<QRgb> pixels = pixelsOf(picture, area);
    m_ground = groundOf(pixels);
    m_direction = directionOf(pixels, m_ground);
    std::vector<float> depths;
    depths.reserve(pixels.size());
    for (QRgb pixel : pixels)
        depths.push_back(depth(pixel));
    const auto place = depths.begin() + std::ptrdiff_t(double(depths.size() - 1) * (1 - inkShare));
    std::nth_element(depths.begin(), place, depths.end());
    m_inkDepth = *place;
}

std::vector<QRgb> InkColours::pixelsOf(const QImage &picture, const QRect &area)
{
    std::vector<QRgb> pixels;
    pixels.reserve(std::size_t(area.width()) * std::size_t(area.height()));
    for (int y = area.top(); y <= area.bottom(); ++y) {
        const auto *row = reinterpret_cast<const QRgb *>(picture.constScanLine(y));
        pixels.insert(pixels.end(), row + area.left(), row + area.right() + 1);
    }
    return pixels;
}

/// The mean of the most common colours, counted in cells of 16 steps per channel.
InkColours::Colour InkColours::groundOf(const std::vector<QRgb> &pixels)
{
    const auto cellOf = [](QRgb pixel) {
        return std::size_t((pixel >> 12 & 0xf00) | (pixel >> 8 & 0xf0) | (pixel >> 4 & 0xf));
    };
    std::array<int, 4096> counts{};
    for (QRgb pixel : pixels)
        ++counts[cellOf(pixel)];
    const auto commonest =
        std::size_t(std::max_element(counts.begin(), counts.end()) - counts.begin());
    Colour sum;
    for (QRgb pixel : pixels) {
        if (cellOf(pixel) != commonest)
            continue;
        sum.red += float(qRed(pixel));
        sum.green += float(qGreen(pixel));
        sum.blue += float(qBlue(pixel));
    }
    const auto count = float(counts[commonest]);
    return {sum.red / count, sum.green / count, sum.blue / count};
}

/// The mean of all differences from the ground, weighted by their size. It points towards the ink,
/// since that is what differs.
InkColours::Colour InkColours::directionOf(const std::vector<QRgb> &pixels, const Colour &ground)
{
    Colour sum;
    for (QRgb pixel : pixels) {
        const Colour difference{float(qRed(pixel)) - ground.red,
                                float(qGreen(pixel)) - ground.green,
                                float(qBlue(pixel)) - ground.blue};
        const float weight = difference.red * difference.red + difference.green * difference.green +
                             difference.blue * difference.blue;
        sum.red += difference.red * weight;
        sum.green += difference.green * weight;
        sum.blue += difference.blue * weight;
    }
    const float length = std::sqrt(sum.red * sum.red + sum.green * sum.green + sum.blue * sum.blue);
    return length > 0 ? Colour{sum.red / length, sum.green / length, sum.blue / length} : Colour{};
}
