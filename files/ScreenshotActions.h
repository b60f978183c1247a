// SPDX-License-Identifier: MIT
#pragma once

#include "files/ClipboardWriter.h"
#include "files/Screenshot.h"
#include "files/ScreenshotMoves.h"
#include "files/WorkQueue.h"
#include "files/renameScreenshot.h"

#include <QObject>

#include <deque>
#include <vector>

class DesktopRecords;
class FileBrowser;
class SystemTrash;
class UndoHistory;

/// All that is done to screenshots, wherever it was asked for, and the bookkeeping of it. Files are
/// touched aside, one thing after the other in the order in which they were asked; what was asked
/// for a file that another one has replaced meanwhile fails. Main thread; the services outlive it.
///
/// `told` is called with the outcome, on the main thread, as long as this object is there: also
/// when the asker is gone.
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

    /// The screenshot that lies at the place. It is being opened when this returns.
    ScreenshotPointer open(const QUrl &url, const QString &applicationName = {});

    /// For the user at once. The program's own renames wait until the file is complete, and leave
    /// it as it is when it is still empty then or the user has typed a name meanwhile.
    enum class By { User, Program };
    using Renamed = std::function<void(const ScreenshotRename &)>;
    void rename(const ScreenshotPointer &screenshot, const QString &name, By by, Renamed told);

    using Trashed = std::function<void(const ScreenshotMoves::Trashing &)>;
    void trash(const ScreenshotPointer &screenshot, Trashed told);

    /// Takes back what was done to this screenshot.
    using Undone = std::function<void(const std::error_code &)>;
    void undo(const ScreenshotPointer &screenshot, const UndoableAction &action, Undone told);

    /// Takes the newest action of the history back, when what was asked for before is done; a
    /// failure is told to nobody.
    void undoLast();

    using Copied = std::function<void(bool)>;
    void copy(const ScreenshotPointer &screenshot, CopyBehavior behavior, Copied told);

    /// Copies a screenshot that has just come, as soon as it is complete. It never replaces what
    /// was asked for after this: of two screenshots the newer one stays on the clipboard.
    void copyNew(const ScreenshotPointer &screenshot, CopyBehavior behavior);

    void reveal(const Screenshot &screenshot);

    // The bookkeeping of a change that has been told to its asker.

    /// The program itself has put a file there: it is no new screenshot, but a recent one.
    void keep(const QUrl &url) { Q_EMIT kept(url); }
    /// The user may want to take this back.
    void remember(const UndoableAction &action);
    void tookBack(const UndoableAction &action, const QUrl &restored);

    /// Calls `isNew` unless this object has just moved the file there itself, which may become
    /// clear only a moment later.
    void whenNotOwn(const QUrl &url, std::function<void()> isNew);

    /// Waits until everything is done and told, for at most `limit`; what waits for a file to be
    /// complete is not waited for. False when it was not.
    bool finish(std::chrono::milliseconds limit) { return m_work.finish(limit); }

Q_SIGNALS:
    void kept(const QUrl &url);

    // Of every move that this object has made, whoever asked for it:
    void movedFile(const QUrl &from, const QUrl &to);
    void trashedFile(const QUrl &from, const QUrl &to);

private:
    /// Something that has been asked for and not yet been told.
    struct Task;
    using TaskPointer = std::shared_ptr<Task>;
    struct Report;

    void undoNewest();
    void enqueueRename(const ScreenshotPointer &screenshot, const QString &name, By by,
                       const Renamed &told);
    void enqueueCopy(const ScreenshotPointer &screenshot, CopyBehavior behavior, int number,
                     Copied told);
    template <typename Work, typename Told>
    void enqueue(const ScreenshotPointer &screenshot, const TaskPointer &task,
                 const QString &description, Work work, Told told);
    void announceWhenSlow(const ScreenshotPointer &screenshot, const TaskPointer &task,
                          const QString &description);
    void moved(const QUrl &from, const QUrl &to);
    void ended(const TaskPointer &task);

    Services m_services;
    UndoHistory &m_history;
    std::deque<TaskPointer> m_tasks; ///< in the order in which they were asked
    std::vector<Report> m_reports;
    int m_lastCopyAsked = 0;
    int m_lastCopyDone = 0;
    /// So that a new screenshot need not wait for what is done to others.
    WorkQueue m_opening;
    WorkQueue m_work;
};
