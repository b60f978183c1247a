// SPDX-License-Identifier: MIT
#pragma once

#include "files/ClipboardWriter.h"
#include "files/Screenshot.h"
#include "files/ScreenshotMoves.h"
#include "files/WorkQueue.h"
#include "files/renameScreenshot.h"
#include "platform/DraggedFile.h"

#include <QObject>

#include <deque>
#include <vector>

class DesktopRecords;
class FileBrowser;
class SystemTrash;
class UndoHistory;

/// Performs all actions on screenshots, wherever they were requested, and their bookkeeping. Files
/// are accessed on background threads, one action after the other in the order of the requests. If
/// another file has replaced the screenshot in the meantime, the action fails. Main thread; the
/// services must outlive this object.
///
/// `onDone` is called with the outcome on the main thread, as long as this object exists, even if
/// the requester has been destroyed.
class ScreenshotActions : public QObject
{
    Q_OBJECT
public:
    struct Services {
        SystemTrash &trash;
        Pasteboard &pasteboard;
        FileBrowser &fileBrowser;
        ScreenshotImages &images;
        DesktopRecords &records;
    };

    ScreenshotActions(const Services &services, UndoHistory &history, QObject *parent = nullptr);
    ~ScreenshotActions() override;

    /// The screenshot at `url`. It is still being opened when this returns.
    ScreenshotPointer open(const QUrl &url, const QString &applicationName = {});

    /// A rename by the user happens at once. One by the program waits until the file is complete,
    /// and does nothing if the file is still empty then or the user has typed a name in the
    /// meantime.
    enum class By { User, Program };
    using Renamed = std::function<void(const ScreenshotRename &)>;
    void rename(const ScreenshotPointer &screenshot, const QString &name, By by,
                const Renamed &onDone);

    using Trashed = std::function<void(const ScreenshotMoves::Trashing &)>;
    void trash(const ScreenshotPointer &screenshot, const Trashed &onDone);

    /// Undoes an action on this screenshot.
    using Undone = std::function<void(const std::error_code &)>;
    void undo(const ScreenshotPointer &screenshot, const UndoableAction &action,
              const Undone &onDone);

    /// Undoes the newest action of the history, after all earlier requests are done. A failure is
    /// not reported.
    void undoLast();

    using Copied = std::function<void(bool)>;
    void copy(const ScreenshotPointer &screenshot, CopyBehavior behavior, const Copied &onDone);

    /// Copies a new screenshot as soon as it is complete. It never replaces a copy that was
    /// requested later: of two screenshots, the newer one stays on the clipboard.
    void copyNew(const ScreenshotPointer &screenshot, CopyBehavior behavior);

    void reveal(const Screenshot &screenshot);

    /// What a drag of this file carries.
    std::unique_ptr<DraggedFile> drag(const QUrl &file);

    // The bookkeeping of a change, for its requester, once it knows the outcome.

    /// The program itself has put this file there: it is not a new screenshot, but belongs in the
    /// recent list.
    void keep(const QUrl &url) { Q_EMIT kept(url); }
    /// Adds the action to the undo history.
    void remember(const UndoableAction &action);
    void noteUndone(const UndoableAction &action, const QUrl &restored);

    /// Calls `onNew`, unless this object has just moved the file there itself. While that is not
    /// yet known, the call is delayed.
    void whenNew(const QUrl &url, std::function<void()> onNew);

    /// Waits at most `limit` until all actions are done and reported. Actions that still wait for a
    /// file to be complete do not count. False if the time was not enough.
    bool finish(std::chrono::milliseconds limit) { return m_work.finish(limit); }

Q_SIGNALS:
    void kept(const QUrl &url);

    // Emitted for every move by this object, whoever requested it:
    void movedFile(const QUrl &from, const QUrl &to);
    void trashedFile(const QUrl &from, const QUrl &to);

private:
    /// An action that has been requested and not yet reported.
    struct Task;
    using TaskPointer = std::shared_ptr<Task>;
    struct Report;

    void undoNewest();
    void enqueueRename(const ScreenshotPointer &screenshot, const QString &name, By by,
                       const Renamed &onDone);
    void enqueueCopy(const ScreenshotPointer &screenshot, CopyBehavior behavior, int number,
                     const Copied &onDone);
    template <typename Work, typename OnDone>
    void enqueue(const ScreenshotPointer &screenshot, const TaskPointer &task,
                 const QString &description, Work work, OnDone onDone);
    void announceWhenSlow(const ScreenshotPointer &screenshot, const TaskPointer &task,
                          const QString &description);
    void moved(const QUrl &from, const QUrl &to);
    void ended(const TaskPointer &task);

    Services m_services;
    UndoHistory &m_history;
    std::deque<TaskPointer> m_tasks; ///< in the order of the requests
    std::vector<Report> m_reports;
    int m_lastCopyAsked = 0;
    int m_lastCopyDone = 0;
    /// Separate, so that a new screenshot does not wait for actions on others.
    WorkQueue m_opening;
    WorkQueue m_work;
};
