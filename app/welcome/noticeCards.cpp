// SPDX-License-Identifier: MIT
#include "app/welcome/noticeCards.h"

#include "app/welcome/SymbolView.h"
#include "app/welcome/labels.h"
#include "platform/DesktopLimits.h"
#include "platform/SystemWords.h"
#include "style/PaletteView.h"
#include "style/SymbolImages.h"
#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"

#include <QGridLayout>
#include <QLabel>

using namespace Qt::StringLiterals;

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

QString inWords(DesktopLimit limit)
{
    switch (limit) {
    case DesktopLimit::StatusItem:
        return SystemWords::noStatusItem.here();
    case DesktopLimit::TrayPlace:
        return SystemWords::noTrayPlace.here();
    case DesktopLimit::ApplicationInFront:
        return SystemWords::noApplicationInFront.here();
    }
    return {};
}

/// One sentence; empty when nothing is missing.
QString missingHere(const QList<DesktopLimit> &limits)
{
    QStringList parts;
    for (const DesktopLimit limit : limits)
        parts.append(inWords(limit));
    if (parts.isEmpty())
        return {};
    const QString last = parts.takeLast();
    const QString first = parts.isEmpty() ? QString() : parts.join(u", "_s) + u" and "_s;
    return u"On this desktop Velmora "_s + first + last + u'.';
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

QWidget *permissionsCard(const DesktopLimits &limits)
{
    const QColor blue = VelmoraPalette::blue();
    PaletteView *made = card(VelmoraPalette::card(), VelmoraPalette::withAlpha(blue, 0.4));
    auto *grid = new QGridLayout(made);
    grid->setContentsMargins(14, 11, 14, 12);
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(4);
    grid->setColumnStretch(1, 1);
    grid->addWidget(
        new SymbolView(symbolIcon(u"hand.raised.fill"_s, blue), symbolSide, u"Permissions"_s), 0, 0,
        3, 1, Qt::AlignTop);
    grid->addWidget(lineLabel(SystemWords::permissionsTitle.here(), systemFont(13, QFont::DemiBold),
                              VelmoraPalette::primaryText()),
                    0, 1);
    grid->addWidget(wrappingLabel(SystemWords::permissions.here(), systemFont(12),
                                  VelmoraPalette::secondaryText()),
                    1, 1);
    QLabel *missing = wrappingLabel({}, systemFont(12), VelmoraPalette::secondaryText());
    grid->addWidget(missing, 2, 1);
    const auto update = [missing, &limits] {
        missing->setText(missingHere(limits.missing()));
        missing->setVisible(!missing->text().isEmpty());
    };
    QObject::connect(&limits, &DesktopLimits::changed, missing, update);
    update();
    return made;
}
