// SPDX-License-Identifier: MIT
#include "style/ImageView.h"

#include "style/VelmoraPalette.h"
#include "style/accessibleRole.h"

#include <QPainter>
#include <QPainterPath>

namespace
{

/// A white page on a white card has no edge of its own.
constexpr double outlineAlpha = 0.14;

bool hasOpaqueCorners(const QImage &image)
{
    const QRect area = image.rect();
    for (const QPoint corner :
         {area.topLeft(), area.topRight(), area.bottomLeft(), area.bottomRight()}) {
        if (qAlpha(image.pixel(corner)) < 255)
            return false;
    }
    return true;
}

} // namespace

ImageView::ImageView(QWidget *parent) : QWidget(parent)
{
    setAccessibleRole(*this, QAccessible::Graphic);
}

void ImageView::setImage(const QImage &image)
{
    m_image = image;
    m_picture = {};
    update();
}

void ImageView::setCornerRadius(double radius)
{
    m_cornerRadius = radius;
    m_picture = {};
    update();
}

QPixmap ImageView::picture()
{
    const double ratio = devicePixelRatioF();
    const QSize pixels = (QSizeF(size()) * ratio).toSize();
    if (m_image.isNull() || pixels.isEmpty())
        return {};
    if (m_picture.size() == pixels && m_picture.devicePixelRatio() == ratio)
        return m_picture;

    m_picture = QPixmap(pixels);
    m_picture.fill(Qt::transparent);
    const QImage scaled = m_image.scaled(pixels, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    QPainter painter(&m_picture);
    painter.setRenderHint(QPainter::Antialiasing);
    QPainterPath clip;
    clip.addRoundedRect(QRectF({}, pixels), m_cornerRadius * ratio, m_cornerRadius * ratio);
    const QPoint corner((pixels.width() - scaled.width()) / 2,
                        (pixels.height() - scaled.height()) / 2);
    // A brush instead of a clip path, because clipping has no smooth edge.
    QBrush brush(scaled);
    brush.setTransform(QTransform::fromTranslate(corner.x(), corner.y()));
    QPainterPath frame;
    frame.addRect(QRectF(corner, scaled.size()));
    const QPainterPath shape = clip.intersected(frame);
    painter.fillPath(shape, brush);
    if (hasOpaqueCorners(scaled)) {
        painter.setClipPath(shape);
        painter.strokePath(
            shape, QPen(VelmoraPalette::withAlpha(VelmoraPalette::primaryText(), outlineAlpha),
                        2 * ratio));
    }
    painter.end();
    m_picture.setDevicePixelRatio(ratio);
    return m_picture;
}

void ImageView::paintEvent(QPaintEvent *)
{
    const QPixmap shown = picture();
    if (!shown.isNull())
        QPainter(this).drawPixmap(0, 0, shown);
}
