// SPDX-License-Identifier: MIT
#pragma once

#include "files/ScreenshotActions.h"
#include "files/UndoHistory.h"
#include "imaging/ScreenshotImages.h"
#include "platform/Platform.h"
#include "tests/fakes/FakeFileBrowser.h"

#include <QColor>
#include <QList>
#include <QSize>
#include <QTemporaryDir>
#include <QUrl>

class BezelButton;
class DraggableImageView;
class FilenameTextField;
class FloatingTrayPanel;
class PaletteView;
class QLabel;
class QWidget;
class ScreenshotRowView;

/// The system's services as the tray uses them, and a folder with screenshots.
class TrayRig
{
public:
    TrayRig();
    ~TrayRig();

    /// Writes a picture of one colour and returns its file.
    QUrl screenshot(const QString &name, QColor color = Qt::red, QSize size = {640, 400}) const;
    QUrl place(const QString &name) const;
    QStringList filesInFolder() const;

    /// Waits until every opened screenshot is complete and all requested actions are done.
    void settle();
    ScreenshotPointer open(const QUrl &url);

    Platform platform;
    FakeFileBrowser *fileBrowser;

private:
    QTemporaryDir m_folder;
    std::unique_ptr<ScreenshotImages> m_images;
    std::vector<std::weak_ptr<Screenshot>> m_opened;

public:
    ScreenshotImages &images;
    UndoHistory history;
    ScreenshotActions actions;
};

/// What the tray shows now.
namespace TrayOnScreen
{

/// Null if there is none.
FloatingTrayPanel *panel();

/// Top to bottom.
QList<ScreenshotRowView *> rows();

FilenameTextField *name(const QWidget *row);
DraggableImageView *thumbnail(const QWidget *row);
QString status(const QWidget *row);
QString badge(const QWidget *row);
BezelButton *button(const QWidget *row, const QString &accessibleName);

/// What the row looks like in its tray.
QImage picture(QWidget *row);

} // namespace TrayOnScreen

/// The lines of the diagnostic log that contain the text.
QStringList logLinesWith(const QString &text);
