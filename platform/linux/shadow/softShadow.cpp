// SPDX-License-Identifier: MIT
#include "platform/linux/shadow/softShadow.h"

#include <QPainter>

#include <algorithm>
#include <array>
#include <cmath>

namespace
{

/// One of the two shadows that are drawn over each other. Lengths in points.
struct Layer {
    double opacity;
    /// Of the Gaussian by which the shadow fades.
    double deviation;
    /// How far the shadow lies below the rectangle.
    double drop;
};

/// A thin one that sharpens the edge, and a wide one that lifts the panel.
constexpr std::array<Layer, 2> layers = {{{0.16, 1.6, 0.5}, {0.26, 9, 6}}};

/// How far a point lies outside a rounded rectangle around the origin; negative inside.
double distanceOutside(double x, double y, QSizeF size, double radius)
{
    const double beyondX = std::abs(x) - size.width() / 2 + radius;
    const double beyondY = std::abs(y) - size.height() / 2 + radius;
    const double outside = std::hypot(std::max(beyondX, 0.0), std::max(beyondY, 0.0));
    return outside + std::min(std::max(beyondX, beyondY), 0.0) - radius;
}

/// How dark all layers together are at a point, given in points from the centre.
double darkness(double x, double y, QSizeF size, double radius)
{
    double light = 1;
    for (const Layer &layer : layers) {
        const double distance = distanceOutside(x, y - layer.drop, size, radius);
        light *= 1 - layer.opacity * 0.5 * std::erfc(distance / layer.deviation / std::sqrt(2.0));
    }
    return 1 - light;
}

/// Draws the left half only; the shadow is symmetric.
void drawHalf(QImage &image, QSizeF size, double radius, double scale)
{
    const double middleX = image.width() / 2.0;
    const double middleY = image.height() / 2.0;
    for (int row = 0; row < image.height(); ++row) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(row));
        const double y = (row + 0.5 - middleY) / scale;
        // Away from the corners, a row is uniform.
        const int corner = int(std::ceil((2 * shadowReach + radius) * scale));
        const int end = std::min((image.width() + 1) / 2, corner);
        for (int column = 0; column < end; ++column) {
            const double x = (column + 0.5 - middleX) / scale;
            line[column] = qRgba(0, 0, 0, qRound(255 * darkness(x, y, size, radius)));
        }
        if (end > 0)
            std::fill(line + end, line + (image.width() + 1) / 2, line[end - 1]);
    }
}

void mirrorLeftHalf(QImage &image)
{
    for (int row = 0; row < image.height(); ++row) {
        auto *line = reinterpret_cast<QRgb *>(image.scanLine(row));
        for (int column = 0; column < image.width() / 2; ++column)
            line[image.width() - 1 - column] = line[column];
    }
}

} // namespace

QImage softShadow(QSize size, double radius, double scale)
{
    const int reach = int(std::ceil(shadowReach * scale));
    QImage image(size + QSize(2 * reach, 2 * reach), QImage::Format_ARGB32_Premultiplied);
    drawHalf(image, QSizeF(size) / scale, radius, scale);
    mirrorLeftHalf(image);

    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationOut);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    painter.drawRoundedRect(QRectF(QPointF(reach, reach), QSizeF(size)), radius * scale,
                            radius * scale);
    return image;
}
