// SPDX-License-Identifier: MIT
#include "style/PaletteView.h"

#include "style/VelmoraPalette.h"

#include <QPainter>

#include <algorithm>

PaletteView::PaletteView(QWidget *parent) : QWidget(parent), m_fillColor(VelmoraPalette::window())
{
}

void PaletteView::setFillColor(const QColor &color)
{
    m_fillColor = color;
    update();
}

void PaletteView::setCornerRadius(double radius)
{
    m_cornerRadius = radius;
    update();
}

void PaletteView::setBorder(double width, const QColor &color)
{
    m_borderWidth = width;
    m_borderColor = color;
    update();
}

void PaletteView::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_fillColor);
    painter.drawRoundedRect(QRectF(rect()), m_cornerRadius, m_cornerRadius);
    if (m_borderWidth <= 0)
        return;

    const double inset = m_borderWidth / 2;
    const double radius = std::max(0.0, m_cornerRadius - inset);
    painter.setPen(QPen(m_borderColor, m_borderWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset), radius, radius);
}
