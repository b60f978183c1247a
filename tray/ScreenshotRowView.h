// SPDX-License-Identifier: MIT
#pragma once

#include "files/Screenshot.h"
#include "files/ScreenshotMoves.h"
#include "style/PaletteView.h"
#include "tray/RowControls.h"
#include "tray/RowName.h"
#include "tray/RowStatus.h"
#include "tray/RowThumbnail.h"
#include "tray/ScreenshotRowAction.h"

#include <QUrl>
#include <QUuid>

#include <functional>
#include <optional>

class RowVeil;
class ScreenshotActions;
class ScreenshotImages;

/// One row of the tray: a screenshot's picture, its editable name, and buttons. It requests the
/// renaming, trashing and restoring of its file, shows the outcome and reports it to its
/// controller. Main thread; the services must outlive it.
class ScreenshotRowView : public PaletteView
{
    Q_OBJECT
public:
    using OnAction = std::function<void(const ScreenshotRowAction &)>;

    struct Services {
        ScreenshotActions &actions;
        ScreenshotImages &images;
    };

    ScreenshotRowView(const QUuid &id, const ScreenshotPointer &screenshot,
                      const QString &suggestedFilename, const Services &services,
                      OnAction onAction);

    QUuid id() const { return m_id; }

    /// Where the file is now.
    QUrl fileURL() const { return m_screenshot->url(); }
    const ScreenshotPointer &screenshot() const { return m_screenshot; }

    void setNewest(bool isNewest);

    /// How far the row has faded in, from 0 to 1.
    void setArrival(double arrival);

    /// Shows a status text for two seconds.
    void setStatus(const QString &text);

    /// Shows a suggested name and, if `autoRename` is set, renames the file to it as soon as the
    /// file is complete. Does nothing once the user has edited the name.
    void updateSuggestedFilename(const QString &name, bool autoRename);

    // The callbacks run after the file operation, even if the row has been deleted by then. They do
    // not run after a failure, which the row shows.

    using Renamed = std::function<void(const RenameResult &)>;
    using Trashed = std::function<void(const TrashResult &)>;
    using Restored = std::function<void(const QUrl &)>;

    /// Renames the file to the name in the field, sanitised and made unique. The status then shows
    /// `successMessage` or, without one, the new name. `renamed` is not called if the name stays
    /// the same.
    void renameFile(const std::optional<QString> &successMessage, Renamed renamed);

    void moveToTrash(const Trashed &trashed);
    void performUndo(const UndoableAction &action, const Restored &restored);

    /// The row is about to be removed. A name that the user has typed but not committed is
    /// committed, as if the field had lost focus, or forgotten.
    enum class TypedName { Commit, Forget };
    void retire(TypedName typed);

Q_SIGNALS:
    /// The user has clicked into the name to edit it.
    void nameClicked();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    struct Rename;

    void connectControls();
    void renameAsSuggested();
    void requestRename(const Rename &rename);
    void renameEnded(const Rename &rename, const ScreenshotRename &ended);
    Renamed renameHandler() const;
    void trashEnded(const ScreenshotMoves::Trashing &ended);
    void undoEnded(const UndoableAction &action, const std::error_code &error);
    void setPendingUndo(const std::optional<UndoableAction> &action);
    void renameFromField();
    void undoTapped();

    const QUuid m_id;
    const ScreenshotPointer m_screenshot;
    const Services m_services;
    const OnAction m_onAction;
    const RowControls m_controls;
    RowName m_name;
    RowStatus m_status;
    RowThumbnail m_thumbnail;
    RowVeil *m_veil;
    std::optional<UndoableAction> m_pendingUndo;
    bool m_isTrashing = false;
    bool m_isUndoing = false;
    bool m_undoesWhenMoved = false;
    bool m_isRetired = false;
};
