// SPDX-License-Identifier: MIT
#include "style/BezelButton.h"

#include "style/SymbolImages.h"
#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"
#include "style/controlPainting.h"

#include <QPainter>
#include <QStyleOptionButton>

#include <algorithm>

namespace
{

using ControlPainting::Bezel;

constexpr int symbolSide = 16;
constexpr int gap = 5;
constexpr int sidePadding = 12;
constexpr int bezelHeight = 28;
constexpr QSize symbolButtonSize(32, 28);

} // namespace

BezelButton::BezelButton(const QString &title, QWidget *parent) : QPushButton(title, parent)
{
    setFont(systemFont(12, QFont::Medium));
    setIconSize({symbolSide, symbolSide});
    setFocusPolicy(Qt::TabFocus);
    setAttribute(Qt::WA_Hover);
    setAutoDefault(false);
}

BezelButton *BezelButton::withSymbol(const QString &symbol, const QString &toolTip, QWidget *parent)
{
    auto *button = new BezelButton({}, parent);
    button->setIcon(symbolIcon(symbol, VelmoraPalette::primaryText()));
    button->setToolTip(toolTip);
    button->setAccessibleName(toolTip);
    button->setFixedSize(symbolButtonSize);
    return button;
}

int BezelButton::contentWidth() const
{
    const int iconWidth = icon().isNull() ? 0 : iconSize().width();
    const int textWidth = fontMetrics().horizontalAdvance(text());
    return iconWidth + textWidth + (iconWidth > 0 && textWidth > 0 ? gap : 0);
}

QSize BezelButton::sizeHint() const
{
    return {contentWidth() + 2 * sidePadding, bezelHeight};
}

void BezelButton::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QStyleOptionButton option;
    initStyleOption(&option);
    ControlPainting::drawBezel(option, isDefault() ? Bezel::accent : Bezel::plain, painter);
    paintContent(painter);
}

void BezelButton::paintContent(QPainter &painter) const
{
    int x = std::max(0, (width() - contentWidth()) / 2);
    if (!icon().isNull()) {
        const QRect place(x, (height() - iconSize().height()) / 2, iconSize().width(),
                          iconSize().height());
        icon().paint(&painter, place, Qt::AlignCenter,
                     isEnabled() ? QIcon::Normal : QIcon::Disabled);
        x += iconSize().width() + gap;
    }
    if (text().isEmpty())
        return;
    const bool onAccent = isDefault() && isEnabled();
    painter.setPen(!isEnabled() ? VelmoraPalette::tertiaryText()
                   : onAccent   ? VelmoraPalette::card()
                                : VelmoraPalette::primaryText());
    painter.drawText(QRect(x, 0, width() - x, height()),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextShowMnemonic, text());
}
