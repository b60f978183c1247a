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

/// Shows the recent screenshots' window and carries out what its rows ask for. Main thread.
class RecentScreenshotsController : public QObject
{
    Q_OBJECT
public:
    struct Services {
        ScreenshotActions &actions;
        ScreenshotImages &images;
        ScreenshotSearch *search = nullptr; ///< null where nothing is searched for
    };

    RecentScreenshotsController(const Services &services, RecentScreenshots &recent,
                                QObject *parent = nullptr);
    ~RecentScreenshotsController() override;

    /// Makes the window when it is asked for the first time; from then on the same one is shown,
    /// its list refreshed.
    void show();

    /// Has picture and file copied whatever the copy setting; the file revealed; or trashed, which
    /// is then in the undo history and no more in the list. Failures show nothing.
    void perform(const RecentScreenshotAction &action);

    /// Null before the first `show`.
    RecentScreenshotsWindow *window() const { return m_window.get(); }

private:
    void trashed(const QUrl &url, const QUrl &trashedURL);

    Services m_services;
    RecentScreenshots &m_recent;
    std::unique_ptr<RecentScreenshotsWindow> m_window;
};
