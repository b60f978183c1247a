// SPDX-License-Identifier: MIT
#include "tray/BadgeLabel.h"

#include "style/SystemFont.h"

#include <QPainter>

#include <algorithm>

namespace
{

constexpr int fontSize = 10;
constexpr double cornerRadius = 7;
constexpr double sidePadding = 5;

} // namespace

BadgeLabel::BadgeLabel(QWidget *parent) : QLabel(parent)
{
    setFont(systemFont(fontSize, QFont::Bold));
    setAlignment(Qt::AlignCenter);
}

void BadgeLabel::setColors(const QColor &text, const QColor &background)
{
    m_textColor = text;
    m_backgroundColor = background;
    update();
}

void BadgeLabel::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(m_backgroundColor);
    painter.drawRoundedRect(QRectF(rect()), cornerRadius, cornerRadius);

    const double wanted = std::max(1, fontMetrics().horizontalAdvance(text()));
    const double squeeze = std::min(1.0, (width() - 2 * sidePadding) / wanted);
    painter.setPen(m_textColor);
    painter.translate(QRectF(rect()).center());
    painter.scale(squeeze, 1);
    painter.drawText(QRectF(-wanted, -height() / 2.0, 2 * wanted, height()), Qt::AlignCenter,
                     text());
}
