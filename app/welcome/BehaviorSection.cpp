// SPDX-License-Identifier: MIT
#include "app/welcome/BehaviorSection.h"

#include "app/welcome/OptionPopUp.h"
#include "app/welcome/columns.h"
#include "app/welcome/labels.h"
#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"

#include <QGridLayout>
#include <QLabel>

using namespace Qt::StringLiterals;

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
    grid->addWidget(sectionLabel(u"Behavior"_s), 0, 0, 1, columnCount);
    addOption(*grid, 0, u"Auto-copy"_s, copyBehavior);
    addOption(*grid, 1, u"Tray duration"_s, trayDuration);
    addOption(*grid, 2, u"Tray position"_s, trayPosition);

    const QString hint = u"Picture is best for chats. File is best for uploads and attachments."_s;
    copyBehavior->setAccessibleDescription(hint);
    grid->addWidget(wrappingLabel(hint, systemFont(11), VelmoraPalette::secondaryText()), hintRow,
                    0, 1, columnCount);
}
