// SPDX-License-Identifier: MIT
#pragma once

#include "style/PaletteView.h"
#include "tray/RowControls.h"
#include "tray/ScreenshotRowAction.h"

#include "files/Screenshot.h"
#include "files/ScreenshotMoves.h"

#include <QUrl>
#include <QUuid>

#include <functional>
#include <optional>

class ScreenshotActions;
class ScreenshotImages;

/// One row of the tray: a screenshot's picture, its name to edit, and what can be done with it. It
/// has its file renamed, trashed and restored, shows the outcome and tells its controller. Main
/// thread; the services outlive it.
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

    /// How much of the row has arrived, 0 to 1: it fades in.
    void setArrival(double arrival);

    /// Shows a status text for two seconds.
    void setStatus(const QString &text);

    /// Puts a suggestion into the name and, on demand, has the file renamed to it as soon as it is
    /// complete; nothing at all once the user has edited the name.
    void updateSuggestedFilename(const QString &name, bool autoRename);

    // Each answer comes later, when the file has been dealt with, and also when the row is gone by
    // then. It does not come after a failure, which the row shows.

    using Renamed = std::function<void(const RenameResult &)>;
    using Trashed = std::function<void(const TrashResult &)>;
    using Restored = std::function<void(const QUrl &)>;

    /// Renames the file to the name in the field, sanitised and made free, and says so: with
    /// `successMessage` or, without, with the new name. No answer where the name stays.
    void renameFile(const std::optional<QString> &successMessage, Renamed renamed);

    void moveToTrash(Trashed trashed);
    void performUndo(const UndoableAction &action, Restored restored);

    /// The row is about to go. What the user has typed and not yet committed is committed, as by
    /// leaving the name, or forgotten.
    enum class TypedName { Commit, Forget };
    void retire(TypedName typed);

Q_SIGNALS:
    /// The user has clicked into the name, to type there.
    void nameClicked();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    enum class Unreadable { LeavesNoImage, KeepsTheImage };
    struct Rename;

    void connectControls();
    void configureThumbnail();
    void loadThumbnail(Unreadable unreadable);
    void requestRename(const Rename &rename);
    void renameEnded(const Rename &rename, const ScreenshotRename &ended);
    Renamed tellingRenamed() const;
    void trashEnded(const ScreenshotMoves::Trashing &ended);
    void undoEnded(const UndoableAction &action, const std::error_code &error);
    void showName();
    void announce(const QString &work);
    void endAnnouncement();
    void setPendingUndo(const std::optional<UndoableAction> &action);
    void renameFromField();
    void undoTapped();
    void updateVeil();

    const QUuid m_id;
    const ScreenshotPointer m_screenshot;
    const Services m_services;
    const OnAction m_onAction;
    const RowControls m_controls;
    PaletteView *m_veil;
    double m_alpha = 1;
    double m_arrival = 1;
    std::optional<UndoableAction> m_pendingUndo;
    bool m_userEditedFilename = false;
    /// What the user has typed and not yet committed stands in the name.
    bool m_hasTypedName = false;
    /// The text to which the file is being renamed.
    std::optional<QString> m_isRenaming;
    bool m_isTrashing = false;
    bool m_isUndoing = false;
    bool m_isRetired = false;
    QString m_announcement;
    int m_statusNumber = 0;
    int m_thumbnailRequest = 0;
};
