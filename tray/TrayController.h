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

/// The floating tray: at most three rows, newest on top, in the chosen corner of the screen where
/// the user works. It performs the actions that the rows request. Main thread; the services must
/// outlive it.
class TrayController : public QObject
{
    Q_OBJECT
public:
    TrayController(PanelWindow &panelWindow, ScreenshotImages &images, ScreenshotActions &actions,
                   QObject *parent = nullptr);
    ~TrayController() override;

    // The callbacks may be empty.

    /// Called after a rename through the tray, with the file's new location.
    std::function<void(const QUrl &url)> onRenamed;
    /// Called after `onRenamed`, for the undo history.
    std::function<void(const QUrl &oldURL, const QUrl &newURL)> onRenameUndoable;
    std::function<void(const QUrl &originalURL, const QUrl &trashedURL)> onTrashUndoable;
    /// Called after a row has undone an action, with the file's current location.
    std::function<void(const UndoableAction &action, const QUrl &url)> onUndoPerformed;
    /// Called after a row has left the tray, for whatever reason.
    std::function<void(const QUuid &itemID)> onRowGone;

    /// Adds a new row on top, without taking keyboard focus.
    QUuid addScreenshot(const ScreenshotPointer &screenshot, const QString &suggestedFilename);

    // The functions below do nothing for a row that no longer exists.

    void updateSuggestion(const QUuid &itemID, const QString &filename, bool autoRename);
    void markNaming(const QUuid &itemID);

    /// Where the row's file is now; nothing if there is no such row.
    std::optional<QUrl> fileURL(const QUuid &itemID) const;

    /// Whether a row shows this file.
    bool containsScreenshot(const QUrl &url) const;

    /// Where the tray was visible between the two times, within the last minute.
    QList<PanelPlace> placesBetween(FileTime from, FileTime to) const;

    /// Commits the names that the user has typed but not committed, since the program is about to
    /// exit.
    void commitTypedNames();

    /// Moves the tray to the place given by the settings and the screen. Does nothing while it is
    /// hidden: the next row places it.
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
