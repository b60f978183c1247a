// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

class BadgeLabel;
class BezelButton;
class DraggableImageView;
class FilenameTextField;
class PaletteView;
class QWidget;
class ScreenshotActions;
class StatusLabel;

/// The controls of one row, in tab order. The row owns them.
struct RowControls {
    PaletteView *accentView;
    DraggableImageView *thumbnailView;
    BadgeLabel *freshnessLabel;
    StatusLabel *statusLabel;
    FilenameTextField *filenameField;
    BezelButton *undoButton;
    BezelButton *copyButton;
    BezelButton *revealButton;
    BezelButton *trashButton;
    BezelButton *closeButton;
};

/// Creates a row's controls and lays them out in it.
RowControls buildRowControls(QWidget *row, const QUrl &file, const QString &filename,
                             ScreenshotActions &actions);
