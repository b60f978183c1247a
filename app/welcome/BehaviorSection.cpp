// SPDX-License-Identifier: MIT
#include "app/welcome/BehaviorSection.h"

#include "app/welcome/OptionPopUp.h"
#include "app/welcome/columns.h"
#include "app/welcome/labels.h"
#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"

#include <QGridLayout>
#include <QLabel>

namespace
{

constexpr int labelRow = 1;
constexpr int popUpRow = 2;
constexpr int hintRow = 3;

void addOption(QGridLayout &grid, int column, const QString &name, OptionPopUp *popUp)
{
    QLabel *nameLabel = label(name);
    nameLabel->setBuddy(popUp);
    popUp->setAccessibleName(name);
    grid.addWidget(nameLabel, labelRow, column);
    grid.addWidget(popUp, popUpRow, column);
}

} // namespace

BehaviorSection::BehaviorSection(QWidget *parent) : QWidget(parent)
{
    auto *copyBehavior = new OptionPopUp(VelmoraSettings::copyBehavior());
    auto *trayDuration = new OptionPopUp(VelmoraSettings::trayDuration());
    auto *trayPosition = new OptionPopUp(VelmoraSettings::trayPosition());
    connect(copyBehavior, &QComboBox::activated, this, &BehaviorSection::copyBehaviorPicked);
    connect(trayDuration, &QComboBox::activated, this, &BehaviorSection::trayDurationPicked);
    connect(trayPosition, &QComboBox::activated, this, &BehaviorSection::trayPositionPicked);

    QGridLayout *grid = makeColumns(this);
    grid->setVerticalSpacing(6);
    grid->addWidget(sectionLabel(QStringLiteral("Behavior")), 0, 0, 1, columnCount);
    addOption(*grid, 0, QStringLiteral("Auto-copy"), copyBehavior);
    addOption(*grid, 1, QStringLiteral("Tray duration"), trayDuration);
    addOption(*grid, 2, QStringLiteral("Tray position"), trayPosition);

    const QString hint =
        QStringLiteral("Picture is best for chats. File is best for uploads and attachments.");
    copyBehavior->setAccessibleDescription(hint);
    grid->addWidget(wrappingLabel(hint, systemFont(11), VelmoraPalette::secondaryText()), hintRow,
                    0, 1, columnCount);
}
