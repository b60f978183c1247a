// SPDX-License-Identifier: MIT
#include "tray/RowControls.h"

#include "files/ScreenshotActions.h"
#include "filesystem/FileUrls.h"
#include "platform/SystemWords.h"
#include "style/BezelButton.h"
#include "style/PaletteView.h"
#include "style/SymbolImages.h"
#include "style/VelmoraPalette.h"
#include "style/accessibleRole.h"
#include "tray/BadgeLabel.h"
#include "tray/DraggableImageView.h"
#include "tray/FilenameTextField.h"
#include "tray/StatusLabel.h"

#include <QHBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

// All in points.
constexpr QSize accentSize(4, 48);
constexpr double accentRadius = 2;
constexpr QSize thumbnailSize(64, 50);
constexpr double thumbnailRadius = 8;
constexpr QSize freshnessSize(48, 18);
constexpr int filenameHeight = 24;
constexpr QSize undoSize(70, 28);
constexpr QMargins rowInsets(8, 7, 8, 7);
constexpr int columnSpacing = 10;
constexpr int badgeSpacing = 8;
constexpr int nameSpacing = 5;
constexpr int nameMinimumWidth = 250;
constexpr int buttonSpacing = 5;
constexpr int buttonsWidth = 208;

BezelButton *makeUndoButton(QWidget *row)
{
    auto *button = new BezelButton(u"Undo"_s, row);
    button->setIcon(symbolIcon(u"arrow.uturn.backward"_s, VelmoraPalette::primaryText()));
    button->setToolTip(u"Undo last change"_s);
    button->setAccessibleName(u"Undo"_s);
    button->setAccessibleDescription(button->toolTip());
    button->setFixedSize(undoSize);
    button->hide();
    return button;
}

RowControls makeControls(QWidget *row, const QUrl &file, const QString &filename,
                         ScreenshotActions &actions)
{
    const auto makeDrag = [&actions](const QUrl &dragged) { return actions.drag(dragged); };
    const auto symbolButton = [row](const QString &symbol, const QString &toolTip) {
        return BezelButton::withSymbol(symbol, toolTip, row);
    };
    return {
        .accentView = new PaletteView(row),
        .thumbnailView = new DraggableImageView(file, makeDrag, row),
        .freshnessLabel = new BadgeLabel(row),
        .statusLabel = new StatusLabel(row),
        .filenameField = new FilenameTextField(filename, row),
        .undoButton = makeUndoButton(row),
        .copyButton = symbolButton(u"doc.on.doc"_s, u"Copy"_s),
        .revealButton = symbolButton(u"folder"_s, SystemWords::reveal.here()),
        .trashButton = symbolButton(u"trash"_s, u"Move to Trash"_s),
        .closeButton = symbolButton(u"xmark"_s, u"Dismiss"_s),
    };
}

void configure(const RowControls &controls)
{
    controls.accentView->setFixedSize(accentSize);
    controls.accentView->setCornerRadius(accentRadius);

    controls.thumbnailView->setFixedSize(thumbnailSize);
    controls.thumbnailView->setCornerRadius(thumbnailRadius);
    controls.thumbnailView->setToolTip(u"Drag screenshot"_s);
    controls.thumbnailView->setCursor(Qt::OpenHandCursor);
    controls.thumbnailView->setAccessibleName(u"Thumbnail"_s);

    controls.freshnessLabel->setFixedSize(freshnessSize);

    controls.filenameField->setFixedHeight(filenameHeight);
    controls.filenameField->setToolTip(u"Edit filename and press Return"_s);
    controls.filenameField->setAccessibleName(controls.filenameField->toolTip());
}

QLayout *layOutName(const RowControls &controls)
{
    auto *badges = new QHBoxLayout;
    badges->setSpacing(badgeSpacing);
    badges->addWidget(controls.freshnessLabel);
    badges->addWidget(controls.statusLabel, 1);

    auto *column = new QVBoxLayout;
    column->setSpacing(nameSpacing);
    column->addStretch();
    column->addLayout(badges);
    column->addWidget(controls.filenameField);
    column->addStretch();
    column->addStrut(nameMinimumWidth);
    return column;
}

/// The file's name distinguishes the controls of this row from those of others.
void nameAfterFile(QWidget *row, DraggableImageView *thumbnail)
{
    const auto name = [row, thumbnail] {
        const QString file = FileUrls::lastPathComponent(thumbnail->fileURL());
        row->setAccessibleName(file);
        thumbnail->setAccessibleDescription(u"Thumbnail of "_s + file);
    };
    setAccessibleRole(*row, QAccessible::Grouping);
    name();
    QObject::connect(thumbnail, &DraggableImageView::fileURLChanged, row, name);
}

/// The four symbols are narrower than the width reserved for the buttons, and are right-aligned in
/// it. With the undo button they need ten points more, which come from the name.
QLayout *layOutButtons(const RowControls &controls)
{
    auto *buttons = new QHBoxLayout;
    buttons->setSpacing(buttonSpacing);
    buttons->setContentsMargins({});
    buttons->addStretch();
    for (BezelButton *button : {controls.undoButton, controls.copyButton, controls.revealButton,
                                controls.trashButton, controls.closeButton})
        buttons->addWidget(button);
    return buttons;
}

} // namespace

RowControls buildRowControls(QWidget *row, const QUrl &file, const QString &filename,
                             ScreenshotActions &actions)
{
    const RowControls controls = makeControls(row, file, filename, actions);
    configure(controls);
    nameAfterFile(row, controls.thumbnailView);

    auto *buttons = new QWidget(row);
    buttons->setLayout(layOutButtons(controls));
    buttons->setMinimumWidth(buttonsWidth);

    auto *columns = new QHBoxLayout(row);
    columns->setContentsMargins(rowInsets);
    columns->setSpacing(columnSpacing);
    columns->addWidget(controls.accentView);
    columns->addWidget(controls.thumbnailView);
    columns->addLayout(layOutName(controls), 1);
    columns->addWidget(buttons);
    return controls;
}
