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

using namespace Qt::StringLiterals;

namespace
{

constexpr int rowSpacing = 8; // points

} // namespace

GeneralSection::GeneralSection(const WelcomeState &state, QWidget *parent) : QWidget(parent)
{
    auto *instant = new BezelButton(state.instantModeOn ? u"Instant Mode On"_s : u"Make Instant"_s);
    connect(instant, &QPushButton::clicked, this, &GeneralSection::instantModeRequested);

    auto *startAtLogin = new QCheckBox(u"Start at login"_s);
    startAtLogin->setFont(systemFont(12, QFont::Medium));
    startAtLogin->setFocusPolicy(Qt::TabFocus);
    startAtLogin->setChecked(state.startsAtLogin);
    connect(startAtLogin, &QCheckBox::clicked, this, &GeneralSection::startAtLoginChanged);

    auto *changeFolder = new BezelButton(u"Change Folder"_s);
    changeFolder->setIcon(symbolIcon(u"folder"_s, VelmoraPalette::primaryText()));
    changeFolder->setAccessibleDescription(u"Change Screenshot Folder"_s);
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
    grid->addWidget(sectionLabel(u"General"_s), 0, 0, 1, 2);
    grid->addWidget(instant, 1, 0);
    grid->addWidget(startAtLogin, 1, 1, Qt::AlignLeft);
    grid->addWidget(changeFolder, 2, 0);
    grid->addWidget(pathLabel(state.folder.toLocalFile()), 2, 1);
}
