// SPDX-License-Identifier: MIT
#include "style/controlPainting.h"

#include "style/VelmoraPalette.h"

#include <QLinearGradient>
#include <QPainter>
#include <QStyleOption>

#include <algorithm>
#include <array>

namespace
{

using VelmoraPalette::withAlpha;

// All in points.
constexpr double controlRadius = 7;
constexpr double checkBoxRadius = 4.5;
constexpr double focusRingWidth = 2;
constexpr double itemRadius = 5;
constexpr int itemInset = 6;
constexpr int itemTextInset = 26;
constexpr int scrollBarHandleInset = 3;

bool showsFocus(const QStyleOption &option)
{
    return option.state & QStyle::State_HasFocus && option.state & QStyle::State_Enabled;
}

/// A line of the given width just inside the rectangle's edge.
void strokeInside(QPainter &painter, const QRectF &rect, double radius, double width,
                  const QColor &color)
{
    const double half = width / 2;
    painter.setPen(QPen(color, width));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(rect.adjusted(half, half, -half, -half), radius - half, radius - half);
}

void fill(QPainter &painter, const QRectF &rect, double radius, const QBrush &brush)
{
    painter.setPen(Qt::NoPen);
    painter.setBrush(brush);
    painter.drawRoundedRect(rect, radius, radius);
}

void drawLine(QPainter &painter, const QColor &color, double width,
              const std::array<QPointF, 3> &points)
{
    painter.setPen(QPen(color, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(points.data(), int(points.size()));
}

/// In a square of 16 points with this top left corner.
void drawCheckMark(QPainter &painter, const QColor &color, const QPointF &corner)
{
    drawLine(painter, color, 1.8,
             {corner + QPointF(4.2, 8.3), corner + QPointF(7, 11), corner + QPointF(11.8, 5.2)});
}

} // namespace

void ControlPainting::drawBezel(const QStyleOption &option, Bezel bezel, QPainter &painter)
{
    const QRectF rect = option.rect;
    const QColor accent = VelmoraPalette::coral();
    const bool enabled = option.state & QStyle::State_Enabled;
    const bool hovered = enabled && option.state & QStyle::State_MouseOver;
    const bool pressed = enabled && option.state & (QStyle::State_Sunken | QStyle::State_On);
    const bool filled = bezel == Bezel::accent && enabled;

    QColor top = VelmoraPalette::card();
    QColor bottom = VelmoraPalette::window();
    QColor border = withAlpha(VelmoraPalette::primaryText(), enabled ? 0.2 : 0.1);
    if (filled) {
        top = accent.lighter(pressed ? 96 : hovered ? 112 : 106);
        bottom = pressed ? accent.darker(112) : accent;
        border = withAlpha(accent.darker(120), 0.9);
    } else if (hovered || pressed) {
        border = withAlpha(accent, pressed ? 0.7 : 0.5);
    }
    QLinearGradient gradient(rect.topLeft(), rect.bottomLeft());
    gradient.setColorAt(0, top);
    gradient.setColorAt(1, bottom);
    fill(painter, rect, controlRadius, gradient);
    if ((hovered || pressed) && !filled)
        fill(painter, rect, controlRadius, withAlpha(accent, pressed ? 0.2 : 0.08));
    strokeInside(painter, rect, controlRadius, 1, border);
    if (!showsFocus(option))
        return;
    if (filled)
        strokeInside(painter, rect.adjusted(2, 2, -2, -2), controlRadius - 2, focusRingWidth,
                     VelmoraPalette::card());
    else
        strokeInside(painter, rect, controlRadius, focusRingWidth, accent);
}

void ControlPainting::drawCheckBox(const QStyleOption &option, QPainter &painter)
{
    const QRectF rect = option.rect;
    const bool on = option.state & QStyle::State_On;
    const bool focused = showsFocus(option);
    fill(painter, rect, checkBoxRadius, on ? VelmoraPalette::coral() : VelmoraPalette::card());
    if (focused) {
        strokeInside(painter, rect, checkBoxRadius, focusRingWidth,
                     on ? VelmoraPalette::primaryText() : VelmoraPalette::coral());
    } else if (!on) {
        strokeInside(painter, rect, checkBoxRadius, 1,
                     withAlpha(VelmoraPalette::secondaryText(), 0.6));
    }
    if (on)
        drawCheckMark(painter, VelmoraPalette::card(), rect.topLeft());
}

void ControlPainting::drawPopUpArrows(const QStyleOption &option, QPainter &painter)
{
    const QRectF rect = option.rect;
    const QPointF middle(rect.right() - popUpArrowWidth / 2.0, rect.center().y());
    for (const double direction : {-1.0, 1.0}) {
        drawLine(painter, VelmoraPalette::secondaryText(), 1.5,
                 {middle + QPointF(-3.2, 2.6 * direction), middle + QPointF(0, 5.8 * direction),
                  middle + QPointF(3.2, 2.6 * direction)});
    }
}

void ControlPainting::drawPopUpItem(const QStyleOptionMenuItem &option, QPainter &painter)
{
    const bool highlighted = option.state & QStyle::State_Selected;
    const QColor color = highlighted ? VelmoraPalette::card() : VelmoraPalette::primaryText();
    painter.fillRect(option.rect, VelmoraPalette::card());
    if (highlighted)
        fill(painter, QRectF(option.rect).adjusted(3, 1, -3, -1), itemRadius,
             VelmoraPalette::coral());
    if (option.checked)
        drawCheckMark(painter, color,
                      QRectF(option.rect).center() -
                          QPointF(option.rect.width() / 2.0 - itemInset, 8));
    painter.setPen(color);
    painter.setFont(option.font);
    painter.drawText(option.rect.adjusted(itemTextInset, 0, 0, 0),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, option.text);
}

void ControlPainting::drawScrollBar(const QStyleOptionSlider &option, const QRect &handle,
                                    QPainter &painter)
{
    if (option.minimum >= option.maximum)
        return;
    const QRectF rect = QRectF(handle).adjusted(scrollBarHandleInset, scrollBarHandleInset,
                                                -scrollBarHandleInset, -scrollBarHandleInset);
    const bool grasped = option.state & (QStyle::State_MouseOver | QStyle::State_Sunken);
    fill(painter, rect, std::min(rect.width(), rect.height()) / 2,
         withAlpha(VelmoraPalette::secondaryText(), grasped ? 0.6 : 0.35));
}
