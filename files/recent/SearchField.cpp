// SPDX-License-Identifier: MIT
#include "files/recent/SearchField.h"

#include "style/SymbolImages.h"
#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"

#include <QIcon>
#include <QPainter>

using namespace Qt::StringLiterals;

namespace
{

// In points.
constexpr int fieldHeight = 30;
constexpr double cornerRadius = 8;
constexpr int symbolSide = 14;
constexpr int symbolLeft = 10;
constexpr int textLeft = 28;
constexpr int textRight = 8;
constexpr double borderAlpha = 0.55;

} // namespace

SearchField::SearchField(QWidget *parent) : QLineEdit(parent)
{
    setFixedHeight(fieldHeight);
    setFont(systemFont(13));
    setFrame(false);
    setTextMargins(textLeft, 0, textRight, 0);
    setAttribute(Qt::WA_MacShowFocusRect, false);
    setPlaceholderText(u"Name or text"_s);
    setAccessibleName(u"Search"_s);
    QPalette colors = palette();
    colors.setColor(QPalette::Base, Qt::transparent);
    colors.setColor(QPalette::Text, VelmoraPalette::primaryText());
    colors.setColor(QPalette::PlaceholderText, VelmoraPalette::tertiaryText());
    setPalette(colors);
}

void SearchField::paintEvent(QPaintEvent *event)
{
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(VelmoraPalette::withAlpha(VelmoraPalette::amber(), borderAlpha));
        painter.setBrush(VelmoraPalette::card());
        constexpr double half = 0.5;
        painter.drawRoundedRect(QRectF(rect()).adjusted(half, half, -half, -half), cornerRadius,
                                cornerRadius);
        symbolIcon(u"magnifyingglass"_s, VelmoraPalette::secondaryText())
            .paint(&painter, symbolLeft, (height() - symbolSide) / 2, symbolSide, symbolSide);
    }
    QLineEdit::paintEvent(event);
}
