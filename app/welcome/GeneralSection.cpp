// SPDX-License-Identifier: MIT
#include "app/welcome/GeneralSection.h"

#include "app/welcome/WelcomeWindow.h"
#include "app/welcome/columns.h"
#include "app/welcome/labels.h"
#include "platform/SystemWords.h"
#include "style/BezelButton.h"
#include "style/SymbolImages.h"
#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>

namespace
{

constexpr int rowSpacing = 8; // points

} // namespace

GeneralSection::GeneralSection(const WelcomeState &state, QWidget *parent) : QWidget(parent)
{
    auto *instant = new BezelButton(state.instantModeOn ? QStringLiteral("Instant Mode On")
                                                        : QStringLiteral("Make Instant"));
    connect(instant, &QPushButton::clicked, this, &GeneralSection::instantModeRequested);

    auto *startAtLogin = new QCheckBox(QStringLiteral("Start at login"));
    startAtLogin->setFont(systemFont(12, QFont::Medium));
    startAtLogin->setFocusPolicy(Qt::TabFocus);
    startAtLogin->setChecked(state.startsAtLogin);
    connect(startAtLogin, &QCheckBox::clicked, this, &GeneralSection::startAtLoginChanged);

    auto *changeFolder = new BezelButton(QStringLiteral("Change Folder"));
    changeFolder->setIcon(symbolIcon(QStringLiteral("folder"), VelmoraPalette::primaryText()));
    changeFolder->setAccessibleDescription(QStringLiteral("Change Screenshot Folder"));
    if (state.keyHasFixedFolder)
        changeFolder->setToolTip(SystemWords::keyHasFixedFolder.here());
    connect(changeFolder, &QPushButton::clicked, this, &GeneralSection::changeFolderRequested);

    // The first of the window's columns, and the other two as one.
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(columnSpacing);
    grid->setVerticalSpacing(rowSpacing);
    grid->setColumnMinimumWidth(0, columnWidth);
    grid->setColumnStretch(1, 1);
    grid->addWidget(sectionLabel(QStringLiteral("General")), 0, 0, 1, 2);
    grid->addWidget(instant, 1, 0);
    grid->addWidget(startAtLogin, 1, 1, Qt::AlignLeft);
    grid->addWidget(changeFolder, 2, 0);
    grid->addWidget(pathLabel(state.folder.toLocalFile()), 2, 1);
}
