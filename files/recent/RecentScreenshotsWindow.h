// SPDX-License-Identifier: MIT
#pragma once

#include "files/recent/RecentScreenshotsView.h"
#include "files/recent/RecentThumbnails.h"
#include "style/FloatingWindow.h"

class RecentScreenshots;
class ScreenshotImages;

/// The window "Recent Screenshots". While it is shown its content is made anew whenever the list
/// has changed. After a change of the folder it goes on showing the former one, name and files,
/// until the new one has been listed. Main thread.
class RecentScreenshotsWindow : public FloatingWindow
{
    Q_OBJECT
public:
    RecentScreenshotsWindow(RecentScreenshots &recent, ScreenshotImages &images,
                            QWidget *parent = nullptr);

    /// Has the list refreshed, and brings the window to the front with the keyboard.
    void presentList();

    /// Null before the window has been shown for the first time.
    RecentScreenshotsView *view() const { return m_view; }

Q_SIGNALS:
    void actionRequested(const RecentScreenshotAction &action);

protected:
    void fitInto(const QSize &room) override;

private:
    void showList();
    void rebuild(const QList<QUrl> &files, const QUrl &folder);

    RecentScreenshots &m_recent;
    RecentThumbnails m_thumbnails;
    RecentScreenshotsView *m_view = nullptr;
};
