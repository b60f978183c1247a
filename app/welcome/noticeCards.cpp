// SPDX-License-Identifier: MIT
#include "app/welcome/noticeCards.h"

#include "app/welcome/SymbolView.h"
#include "app/welcome/labels.h"
#include "platform/SystemWords.h"
#include "style/PaletteView.h"
#include "style/SymbolImages.h"
#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"

#include <QGridLayout>

namespace
{

// In points.
constexpr int symbolSide = 22;
constexpr double cornerRadius = 12;

PaletteView *card(const QColor &fill, const QColor &border)
{
    auto *made = new PaletteView;
    made->setFillColor(fill);
    made->setCornerRadius(cornerRadius);
    made->setBorder(1, border);
    return made;
}

} // namespace

QWidget *privacyCard()
{
    const QColor teal = VelmoraPalette::teal();
    PaletteView *made = card(VelmoraPalette::cardMuted(), VelmoraPalette::withAlpha(teal, 0.24));
    auto *column = new QVBoxLayout(made);
    column->setContentsMargins(14, 9, 14, 10);
    column->addWidget(wrappingLabel(SystemWords::privacy.here(), systemFont(12),
                                    VelmoraPalette::secondaryText()));
    return made;
}

QWidget *permissionsCard()
{
    const QColor blue = VelmoraPalette::blue();
    PaletteView *made = card(VelmoraPalette::card(), VelmoraPalette::withAlpha(blue, 0.4));
    auto *grid = new QGridLayout(made);
    grid->setContentsMargins(14, 11, 14, 12);
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(4);
    grid->setColumnStretch(1, 1);
    grid->addWidget(new SymbolView(symbolIcon(QStringLiteral("hand.raised.fill"), blue), symbolSide,
                                   QStringLiteral("Permissions")),
                    0, 0, 2, 1, Qt::AlignTop);
    grid->addWidget(lineLabel(SystemWords::permissionsTitle.here(), systemFont(13, QFont::DemiBold),
                              VelmoraPalette::primaryText()),
                    0, 1);
    grid->addWidget(wrappingLabel(SystemWords::permissions.here(), systemFont(12),
                                  VelmoraPalette::secondaryText()),
                    1, 1);
    return made;
}
