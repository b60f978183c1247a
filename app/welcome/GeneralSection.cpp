#include "app/welcome/GeneralSection.h"

#include "app/WelcomeWindow.h"
#include "app/welcome/columns.h"
#include "app/welcome/labels.h"
#include "style/BezelButton.h"
#include "style/SymbolImages.h"
#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"

#include <QCheckBox>
#include <QGridLayout>
#include <QLabel>

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
    connect(changeFolder, &QPushButton::clicked, this, &GeneralSection::changeFolderRequested);

    QGridLayout *grid = makeColumns(this);
    grid->addWidget(sectionLabel(QStringLiteral("General")), 0, 0, 1, columnCount);
    grid->addWidget(instant, 1, 0);
    grid->addWidget(startAtLogin, 1, 1, 1, 2, Qt::AlignLeft);
    grid->addWidget(changeFolder, 2, 0);
    grid->addWidget(pathLabel(state.folder.toLocalFile()), 2, 1, 1, 2);
}
