// SPDX-License-Identifier: MIT
#include "app/welcome/Pill.h"

#include "app/welcome/labels.h"
#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"

#include <QPainter>

namespace
{

// In points.
constexpr int pillHeight = 24;
constexpr int sideInset = 11;
constexpr double cornerRadius = 10;
constexpr double borderWidth = 1;
constexpr double fillAlpha = 0.18;
constexpr double borderAlpha = 0.24;

} // namespace

Pill::Pill(const QString &text, const QColor &color, QWidget *parent)
    : QLabel(text, parent), m_color(color)
{
    setFont(systemFont(12, QFont::DemiBold));
    setTextColor(*this, VelmoraPalette::primaryText());
    setContentsMargins(sideInset, 0, sideInset, 0);
    setFixedHeight(pillHeight);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void Pill::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(VelmoraPalette::withAlpha(m_color, fillAlpha));
    painter.drawRoundedRect(QRectF(rect()), cornerRadius, cornerRadius);

    constexpr double inset = borderWidth / 2;
    painter.setPen(QPen(VelmoraPalette::withAlpha(m_color, borderAlpha), borderWidth));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(rect()).adjusted(inset, inset, -inset, -inset),
                            cornerRadius - inset, cornerRadius - inset);
    painter.end();
    QLabel::paintEvent(event);
}
