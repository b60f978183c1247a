// SPDX-License-Identifier: MIT
#include "files/ScreenshotActions.h"

#include "files/UndoHistory.h"
#include "files/reverseAction.h"
#include "filesystem/FileUrls.h"
#include "platform/DesktopRecords.h"
#include "platform/FileBrowser.h"

#include <QTimer>

#include <algorithm>
#include <atomic>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

/// Actions that take longer are announced.
constexpr auto announcementDelay = 100ms;

} // namespace

struct ScreenshotActions::Task {
    explicit Task(QUrl folderOfName = {}) : folder(std::move(folderOfName)) {}

    /// The folder in which the task may create a name; empty if it creates none.
    QUrl folder;
    std::atomic_bool hasBegun = false;
    bool hasEnded = false;
};

/// A new file that a running task may have put there.
struct ScreenshotActions::Report {
    QUrl url;
    TaskPointer lastSuspect;
    std::function<void()> onNew;
};

ScreenshotActions::ScreenshotActions(const Services &services, UndoHistory &history,
                                     QObject *parent)
    : QObject(parent), m_services(services), m_history(history)
{
}

ScreenshotActions::~ScreenshotActions() = default;

ScreenshotPointer ScreenshotActions::open(const QUrl &url, const QString &applicationName)
{
    const auto screenshot = std::make_shared<Screenshot>(url, applicationName, m_services.images);
    m_opening.add([screenshot]() -> WorkQueue::Outcome {
        screenshot->open();
        return [screenshot] { screenshot->reportOpened(); };
    });
    return screenshot;
}

void ScreenshotActions::rename(const ScreenshotPointer &screenshot, const QString &name, By by,
                               const Renamed &onDone)
{
    if (by == By::User) {
        enqueueRename(screenshot, name, by, onDone);
        return;
    }
    screenshot->whenComplete(this, [=, this] {
        if (screenshot->isNamedByUser())
            onDone({});
        else
            enqueueRename(screenshot, name, by, onDone);
    });
}

void ScreenshotActions::enqueueRename(const ScreenshotPointer &screenshot, const QString &name,
                                      By by, const Renamed &onDone)
{
    const auto only = by == By::User ? ScreenshotMoves::Only::Any : ScreenshotMoves::Only::Filled;
    const auto task = std::make_shared<Task>(FileUrls::parentFolder(screenshot->url()));
    enqueue(
        screenshot, task, u"Renaming..."_s,
        [=] { return ScreenshotMoves::rename(*screenshot, name, only); },
        [=, this](const ScreenshotRename &rename) {
            if (rename.result)
                moved(rename.result->oldURL, rename.result->newURL);
            onDone(rename);
        });
}

void ScreenshotActions::trash(const ScreenshotPointer &screenshot, const Trashed &onDone)
{
    enqueue(
        screenshot, std::make_shared<Task>(), u"Moving to Trash..."_s,
        [this, screenshot] { return ScreenshotMoves::trash(*screenshot, m_services.trash); },
        [this, onDone](const ScreenshotMoves::Trashing &trashing) {
            if (trashing.result) {
                m_services.records.fileTrashed(trashing.result->originalURL);
                Q_EMIT trashedFile(trashing.result->originalURL, trashing.result->trashedURL);
            }
            onDone(trashing);
        });
}

void ScreenshotActions::undo(const ScreenshotPointer &screenshot, const UndoableAction &action,
                             const Undone &onDone)
{
    const auto task = std::make_shared<Task>(FileUrls::parentFolder(action.before));
    enqueue(
        screenshot, task, u"Undoing..."_s,
        [=, this] { return ScreenshotMoves::undo(*screenshot, m_services.trash, action); },
        [=, this](const std::error_code &error) {
            if (!error)
                moved(action.after, action.before);
            onDone(error);
            screenshot->closeFile();
        });
}

void ScreenshotActions::undoLast()
{
    m_work.add([this]() -> WorkQueue::Outcome { return [this] { undoNewest(); }; });
}

void ScreenshotActions::undoNewest()
{
    const std::optional<UndoableAction> action = m_history.takeNewest();
    if (!action)
        return;
    const auto task = std::make_shared<Task>(FileUrls::parentFolder(action->before));
    enqueue(
        nullptr, task, {}, [this, action] { return reverseAction(m_services.trash, *action); },
        [this, action](const std::error_code &error) {
            if (error)
                return;
            moved(action->after, action->before);
            keep(action->before);
        });
}

void ScreenshotActions::copy(const ScreenshotPointer &screenshot, CopyBehavior behavior,
                             const Copied &onDone)
{
    enqueueCopy(screenshot, behavior, ++m_lastCopyAsked, onDone);
}

void ScreenshotActions::copyNew(const ScreenshotPointer &screenshot, CopyBehavior behavior)
{
    const int number = ++m_lastCopyAsked;
    screenshot->whenComplete(this,
                             [=, this] { enqueueCopy(screenshot, behavior, number, [](bool) {}); });
}

void ScreenshotActions::enqueueCopy(const ScreenshotPointer &screenshot, CopyBehavior behavior,
                                    int number, const Copied &onDone)
{
    enqueue(
        screenshot, std::make_shared<Task>(), u"Copying..."_s,
        [=] { return ScreenshotMoves::contents(*screenshot, behavior); },
        [=, this](const ClipboardWriter::Contents &contents) {
            const bool isNewest = number > m_lastCopyDone;
            const bool copied = isNewest && ClipboardWriter::copy(m_services.pasteboard, contents);
            if (copied)
                m_lastCopyDone = number;
            onDone(copied);
        });
}

void ScreenshotActions::reveal(const Screenshot &screenshot)
{
    m_services.fileBrowser.reveal(screenshot.url());
}

std::unique_ptr<DraggedFile> ScreenshotActions::drag(const QUrl &file)
{
    return m_services.pasteboard.drag(file);
}

void ScreenshotActions::remember(const UndoableAction &action)
{
    m_history.push(action);
}

void ScreenshotActions::noteUndone(const UndoableAction &action, const QUrl &restored)
{
    keep(restored);
    m_history.remove(action);
}

void ScreenshotActions::whenNew(const QUrl &url, std::function<void()> onNew)
{
    const QUrl folder = FileUrls::parentFolder(url);
    const auto suspect =
        std::find_if(m_tasks.rbegin(), m_tasks.rend(), [&folder](const TaskPointer &task) {
            return task->hasBegun && task->folder == folder;
        });
    if (suspect == m_tasks.rend())
        onNew();
    else
        m_reports.push_back({url, *suspect, std::move(onNew)});
}

template <typename Work, typename OnDone>
void ScreenshotActions::enqueue(const ScreenshotPointer &screenshot, const TaskPointer &task,
                                const QString &description, Work work, OnDone onDone)
{
    m_tasks.push_back(task);
    if (screenshot)
        announceWhenSlow(screenshot, task, description);
    m_work.add([=, this]() -> WorkQueue::Outcome {
        task->hasBegun = true;
        return [=, this, result = work()] {
            task->hasEnded = true;
            onDone(result);
            ended(task);
        };
    });
}

void ScreenshotActions::announceWhenSlow(const ScreenshotPointer &screenshot,
                                         const TaskPointer &task, const QString &description)
{
    QTimer::singleShot(announcementDelay, this, [screenshot, task, description] {
        if (!task->hasEnded)
            Q_EMIT screenshot->takesLong(description);
    });
}

void ScreenshotActions::moved(const QUrl &from, const QUrl &to)
{
    m_services.pasteboard.fileMoved(from, to);
    m_services.records.fileMoved(from, to);
    Q_EMIT movedFile(from, to);
    std::erase_if(m_reports, [&to](const Report &report) { return report.url == to; });
}

void ScreenshotActions::ended(const TaskPointer &task)
{
    std::erase(m_tasks, task);
    std::vector<Report> cleared;
    for (const Report &report : m_reports) {
        if (report.lastSuspect == task)
            cleared.push_back(report);
    }
    std::erase_if(m_reports, [&task](const Report &each) { return each.lastSuspect == task; });
    for (const Report &report : cleared)
        report.onNew();
}
