// SPDX-License-Identifier: MIT
#include "app/welcome/ReadinessCard.h"

#include "app/welcome/SymbolView.h"
#include "app/welcome/labels.h"
#include "style/SymbolImages.h"
#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"

#include <QGridLayout>

using namespace Qt::StringLiterals;

namespace
{

// In points.
constexpr int symbolSide = 20;
constexpr double cornerRadius = 12;
constexpr double borderAlpha = 0.4;

} // namespace

ReadinessCard::ReadinessCard(const QString &title, const QString &detail, const QString &symbol,
                             const QColor &color, QWidget *parent)
    : PaletteView(parent)
{
    setFillColor(VelmoraPalette::card());
    setCornerRadius(cornerRadius);
    setBorder(1, VelmoraPalette::withAlpha(color, borderAlpha));
    setAccessibleName(title + u", "_s + detail);

    QLabel *detailLabel = truncatedLabel(detail, systemFont(12), VelmoraPalette::secondaryText());

    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(14, 11, 14, 12);
    grid->setHorizontalSpacing(8);
    grid->setVerticalSpacing(5);
    grid->setColumnStretch(1, 1);
    grid->addWidget(new SymbolView(symbolIcon(symbol, color), symbolSide), 0, 0);
    grid->addWidget(
        lineLabel(title, systemFont(13, QFont::DemiBold), VelmoraPalette::primaryText()), 0, 1);
    grid->addWidget(detailLabel, 1, 0, 1, 2);
}
