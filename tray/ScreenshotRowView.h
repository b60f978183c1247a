#pragma once

#include "style/PaletteView.h"
#include "tray/RowControls.h"
#include "tray/ScreenshotRowAction.h"

#include "files/TrashResult.h"

#include <QUrl>
#include <QUuid>

#include <functional>
#include <optional>

class ScreenshotImages;
class SystemTrash;

/// One row of the tray: a screenshot's picture, its name to edit, and what can be done with it. It
/// renames, trashes and restores its file itself and tells its controller. Main thread; the
/// services outlive it.
class ScreenshotRowView : public PaletteView
{
    Q_OBJECT
public:
    using OnAction = std::function<void(const ScreenshotRowAction &)>;

    struct Services {
        SystemTrash &trash;
        ScreenshotImages &images;
    };

    ScreenshotRowView(const QUuid &id, const QUrl &url, const QString &suggestedFilename,
                      const Services &services, OnAction onAction);

    QUuid id() const { return m_id; }

    /// Where the file is now.
    QUrl fileURL() const { return m_fileURL; }

    void setNewest(bool isNewest);

    /// How much of the row has arrived, 0 to 1: it fades in.
    void setArrival(double arrival);

    /// Shows a status text for two seconds.
    void setStatus(const QString &text);

    /// Puts a suggestion into the name and, on demand, renames the file to it; nothing at all once
    /// the user has edited the name.
    void updateSuggestedFilename(const QString &name, bool autoRename);

    /// Renames the file to the name in the field, sanitised and made free, and says so: with
    /// `successMessage` or, without, with the new name. Absent when nothing was renamed.
    std::optional<RenameResult> renameFile(const std::optional<QString> &successMessage);

    /// Absent on failure, which the row shows.
    std::optional<TrashResult> moveToTrash();

    /// Where the file is restored to; absent on failure, which the row shows.
    std::optional<QUrl> performUndo(const UndoableAction &action);

    /// The row is about to go: leaving the name no longer commits it.
    void retire();

Q_SIGNALS:
    /// The user has clicked into the name, to type there.
    void nameClicked();

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    enum class Unreadable { LeavesNoImage, KeepsTheImage };

    void connectControls();
    void configureThumbnail();
    void loadThumbnail(Unreadable unreadable);
    void moved(const QUrl &url);
    void updateFileURL(const QUrl &url);
    void setPendingUndo(const std::optional<UndoableAction> &action);
    void renameFromField();
    void undoTapped();
    void updateVeil();

    const QUuid m_id;
    QUrl m_fileURL;
    const Services m_services;
    const OnAction m_onAction;
    const RowControls m_controls;
    PaletteView *m_veil;
    double m_alpha = 1;
    double m_arrival = 1;
    std::optional<UndoableAction> m_pendingUndo;
    bool m_userEditedFilename = false;
    bool m_isRenaming = false;
    bool m_isRetired = false;
    int m_thumbnailRequest = 0;
};
