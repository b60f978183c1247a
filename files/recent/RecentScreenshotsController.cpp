#include "files/recent/RecentScreenshotsController.h"

#include "files/ClipboardWriter.h"
#include "files/ScreenshotTrash.h"
#include "files/UndoHistory.h"
#include "files/recent/RecentScreenshots.h"
#include "files/recent/RecentScreenshotsWindow.h"
#include "platform/FileBrowser.h"

RecentScreenshotsController::RecentScreenshotsController(const Services &services,
                                                         RecentScreenshots &recent,
                                                         UndoHistory &history, QObject *parent)
    : QObject(parent), m_services(services), m_recent(recent), m_history(history)
{
}

RecentScreenshotsController::~RecentScreenshotsController() = default;

void RecentScreenshotsController::show()
{
    if (!m_window) {
        m_window = std::make_unique<RecentScreenshotsWindow>(m_recent, m_services.images);
        connect(m_window.get(), &RecentScreenshotsWindow::actionRequested, this,
                &RecentScreenshotsController::perform);
    }
    m_window->presentList();
}

void RecentScreenshotsController::perform(const RecentScreenshotAction &action)
{
    switch (action.kind) {
    case RecentScreenshotAction::Kind::Copy:
        ClipboardWriter::copy(m_services.pasteboard, action.url, CopyBehavior::imageAndFile);
        return;
    case RecentScreenshotAction::Kind::Reveal:
        m_services.fileBrowser.reveal(action.url);
        return;
    case RecentScreenshotAction::Kind::Trash:
        trash(action.url);
        return;
    }
}

void RecentScreenshotsController::trash(const QUrl &url)
{
    const ScreenshotTrash::Result result = ScreenshotTrash::move(m_services.systemTrash, url);
    if (!result.location)
        return;
    m_history.push(UndoableAction::trash(url, *result.location));
    m_recent.remove(url);
}
