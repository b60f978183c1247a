#pragma once

#include "files/recent/RecentScreenshotsView.h"
#include "files/recent/RecentThumbnails.h"

class RecentScreenshots;
class ScreenshotImages;

/// The window "Recent Screenshots". It stays above other windows, and closing it only hides it.
/// While it is shown its content is made anew whenever the list has changed. Main thread.
class RecentScreenshotsWindow : public QWidget
{
    Q_OBJECT
public:
    /// Its place is the middle of the screen, until the user moves it.
    RecentScreenshotsWindow(RecentScreenshots &recent, ScreenshotImages &images,
                            QWidget *parent = nullptr);

    /// Refreshes the list, and brings the window to the front with the keyboard.
    void present();

    /// Null before the window has been shown for the first time.
    RecentScreenshotsView *view() const { return m_view; }

Q_SIGNALS:
    void actionRequested(const RecentScreenshotAction &action);

private:
    void showList();
    void rebuild();
    void placeOnScreen();

    RecentScreenshots &m_recent;
    RecentThumbnails m_thumbnails;
    RecentScreenshotsView *m_view = nullptr;
};
