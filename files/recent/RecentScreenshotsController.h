// SPDX-License-Identifier: MIT
#pragma once

#include "files/recent/RecentScreenshotAction.h"

#include <QObject>

#include <memory>

class RecentScreenshots;
class RecentScreenshotsWindow;
class ScreenshotActions;
class ScreenshotImages;
class ScreenshotSearch;

/// Shows the recent screenshots' window and performs the actions that its rows request. Main
/// thread.
class RecentScreenshotsController : public QObject
{
    Q_OBJECT
public:
    struct Services {
        ScreenshotActions &actions;
        ScreenshotImages &images;
        ScreenshotSearch *search = nullptr; ///< null if there is no search
    };

    RecentScreenshotsController(const Services &services, RecentScreenshots &recent,
                                QObject *parent = nullptr);
    ~RecentScreenshotsController() override;

    /// Shows the window and refreshes its list. The window is created the first time.
    void show();

    /// Copies picture and file, whatever the copy setting; reveals the file; or moves it to the
    /// trash, which adds it to the undo history and removes it from the list. Failures are not
    /// shown.
    void perform(const RecentScreenshotAction &action);

    /// Null before the first `show`.
    RecentScreenshotsWindow *window() const { return m_window.get(); }

private:
    void trashed(const QUrl &url, const QUrl &trashedURL);

    Services m_services;
    RecentScreenshots &m_recent;
    std::unique_ptr<RecentScreenshotsWindow> m_window;
};
