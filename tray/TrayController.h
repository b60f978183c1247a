// SPDX-License-Identifier: MIT
#pragma once

#include "files/Screenshot.h"
#include "tray/PanelHistory.h"
#include "tray/RowDismissals.h"
#include "tray/ScreenshotRowAction.h"
#include "tray/TrayScreen.h"

#include <QHash>
#include <QList>
#include <QObject>
#include <QUrl>
#include <QUuid>

#include <functional>
#include <memory>
#include <optional>

class FloatingTrayPanel;
class PanelWindow;
class RowStack;
class ScreenshotActions;
class ScreenshotImages;
class ScreenshotRowView;

/// The floating tray: at most three rows, the newest on top, in the corner that the user has
/// chosen, of the screen where they work. It carries out what the rows ask for. Main thread; the
/// services outlive it.
class TrayController : public QObject
{
    Q_OBJECT
public:
    TrayController(PanelWindow &panelWindow, ScreenshotImages &images, ScreenshotActions &actions,
                   QObject *parent = nullptr);
    ~TrayController() override;

    // Each may be empty.

    /// After a rename made through the tray: the file's new place.
    std::function<void(const QUrl &url)> onRenamed;
    /// After `onRenamed`, for the undo history.
    std::function<void(const QUrl &oldURL, const QUrl &newURL)> onRenameUndoable;
    std::function<void(const QUrl &originalURL, const QUrl &trashedURL)> onTrashUndoable;
    /// After a row has undone an action: where the file is now.
    std::function<void(const UndoableAction &action, const QUrl &url)> onUndoPerformed;
    /// After a row has left the tray, for whatever reason.
    std::function<void(const QUuid &itemID)> onRowGone;

    /// Shows a new row, on top, without taking the keyboard.
    QUuid addScreenshot(const ScreenshotPointer &screenshot, const QString &suggestedFilename);

    // What follows does nothing for a row that is gone.

    void updateSuggestion(const QUuid &itemID, const QString &filename, bool autoRename);
    void markNaming(const QUuid &itemID);

    /// Where the row's file is now; absent when there is no such row.
    std::optional<QUrl> fileURL(const QUuid &itemID) const;

    /// Whether some row shows this file.
    bool containsScreenshot(const QUrl &url) const;

    /// Where the tray was visible at some time between the two moments, as far as they lie within
    /// the last minute.
    QList<PanelPlace> placesBetween(FileTime from, FileTime to) const;

    /// Commits what the user has typed and not yet committed, since the program is about to end.
    void commitTypedNames();

    /// Moves the tray to where the settings and the screen want it.
    void layoutPanel();

private:
    void createPanel();
    void trimRows();
    void updateFreshness();
    void scheduleDismissal(const QUuid &id);
    void removeRow(const QUuid &id);
    void takeOut(ScreenshotRowView *row);
    void animateArrival(ScreenshotRowView *row);

    void handle(const ScreenshotRowAction &action);
    void copy(ScreenshotRowView &row);
    void renamed(const RenameResult &result);
    void trash(ScreenshotRowView &row);
    void undo(ScreenshotRowView &row, const UndoableAction &action);

    PanelWindow &m_panelWindow;
    ScreenshotImages &m_images;
    ScreenshotActions &m_actions;
    std::unique_ptr<FloatingTrayPanel> m_panel;
    RowStack *m_stackView = nullptr;
    QHash<QUuid, ScreenshotRowView *> m_rows;
    QList<QUuid> m_rowOrder;
    RowDismissals m_dismissalTasks;
    TrayScreen m_screen;
};
