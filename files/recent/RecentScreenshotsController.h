#pragma once

#include "files/recent/RecentScreenshotAction.h"

#include <QObject>

#include <memory>

class FileBrowser;
class Pasteboard;
class RecentScreenshots;
class RecentScreenshotsWindow;
class ScreenshotImages;
class SystemTrash;
class UndoHistory;

/// Shows the recent screenshots' window and carries out what its rows ask for. Main thread.
class RecentScreenshotsController : public QObject
{
    Q_OBJECT
public:
    struct Services {
        FileBrowser &fileBrowser;
        Pasteboard &pasteboard;
        SystemTrash &systemTrash;
        ScreenshotImages &images;
    };

    RecentScreenshotsController(const Services &services, RecentScreenshots &recent,
                                UndoHistory &history, QObject *parent = nullptr);
    ~RecentScreenshotsController() override;

    /// Makes the window when it is asked for the first time; from then on the same one is shown,
    /// its list refreshed.
    void show();

    /// Copies picture and file whatever the copy setting; reveals; or trashes, which is then in the
    /// undo history and no more in the list. Failures show nothing.
    void perform(const RecentScreenshotAction &action);

    /// Null before the first `show`.
    RecentScreenshotsWindow *window() const { return m_window.get(); }

private:
    void trash(const QUrl &url);

    Services m_services;
    RecentScreenshots &m_recent;
    UndoHistory &m_history;
    std::unique_ptr<RecentScreenshotsWindow> m_window;
};
