// SPDX-License-Identifier: MIT
#include "files/recent/RecentScreenshotsController.h"

#include "files/ScreenshotActions.h"
#include "files/recent/RecentScreenshots.h"
#include "files/recent/RecentScreenshotsWindow.h"

#include <QPointer>

RecentScreenshotsController::RecentScreenshotsController(const Services &services,
                                                         RecentScreenshots &recent, QObject *parent)
    : QObject(parent), m_services(services), m_recent(recent)
{
}

RecentScreenshotsController::~RecentScreenshotsController() = default;

void RecentScreenshotsController::show()
{
    if (!m_window) {
        m_window = std::make_unique<RecentScreenshotsWindow>(m_recent, m_services.images,
                                                             m_services.search);
        connect(m_window.get(), &RecentScreenshotsWindow::actionRequested, this,
                &RecentScreenshotsController::perform);
    }
    m_window->presentList();
}

void RecentScreenshotsController::perform(const RecentScreenshotAction &action)
{
    ScreenshotActions &actions = m_services.actions;
    const ScreenshotPointer screenshot = actions.open(action.url);
    switch (action.kind) {
    case RecentScreenshotAction::Kind::Copy:
        actions.copy(screenshot, CopyBehavior::imageAndFile, [](bool) {});
        return;
    case RecentScreenshotAction::Kind::Reveal:
        actions.reveal(*screenshot);
        return;
    case RecentScreenshotAction::Kind::Trash:
        actions.trash(screenshot, [controller = QPointer(this),
                                   url = action.url](const ScreenshotMoves::Trashing &outcome) {
            if (controller && outcome.result)
                controller->trashed(url, outcome.result->trashedURL);
        });
        return;
    }
}

void RecentScreenshotsController::trashed(const QUrl &url, const QUrl &trashedURL)
{
    m_services.actions.remember(UndoableAction::trash(url, trashedURL));
    m_recent.remove(url);
}
