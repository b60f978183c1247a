#include "style/BezelButton.h"

#include "style/SymbolImages.h"
#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"

#include <QLinearGradient>
#include <QPainter>

#include <algorithm>

namespace
{

using VelmoraPalette::withAlpha;

constexpr int symbolSide = 16;
constexpr int gap = 5;
constexpr int sidePadding = 12;
constexpr int bezelHeight = 28;
constexpr double radius = 7;
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
    paintBezel(painter);
    paintContent(painter);
}

void BezelButton::paintBezel(QPainter &painter) const
{
    const QRectF bezel = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const bool hovered = isEnabled() && underMouse();
    const QColor accent = VelmoraPalette::coral();

    QLinearGradient fill(bezel.topLeft(), bezel.bottomLeft());
    if (isDefault() && isEnabled()) {
        fill.setColorAt(0, accent.lighter(isDown() ? 96 : hovered ? 112 : 106));
        fill.setColorAt(1, isDown() ? accent.darker(112) : accent);
    } else {
        fill.setColorAt(0, VelmoraPalette::card());
        fill.setColorAt(1, VelmoraPalette::window());
    }
    QColor border = withAlpha(VelmoraPalette::primaryText(), isEnabled() ? 0.16 : 0.08);
    if (isDefault() && isEnabled())
        border = withAlpha(accent.darker(120), 0.9);
    else if (hovered)
        border = withAlpha(accent, isDown() ? 0.7 : 0.5);

    painter.setPen(QPen(border, 1));
    painter.setBrush(fill);
    painter.drawRoundedRect(bezel, radius, radius);

    if (hovered && !isDefault()) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(withAlpha(accent, isDown() ? 0.2 : 0.08));
        painter.drawRoundedRect(bezel, radius, radius);
    }
    if (hasFocus()) {
        painter.setPen(QPen(withAlpha(accent, 0.7), 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), radius - 0.5, radius - 0.5);
    }
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
