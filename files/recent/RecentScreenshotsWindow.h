// SPDX-License-Identifier: MIT
#pragma once

#include "files/recent/RecentScreenshotsView.h"
#include "files/recent/RecentSearch.h"
#include "files/recent/RecentThumbnails.h"
#include "style/FloatingWindow.h"

#include <memory>

class RecentScreenshots;
class ScreenshotImages;
class ScreenshotSearch;

/// The window "Recent Screenshots". While it is shown its content is made anew whenever the list
/// has changed. After a change of the folder it goes on showing the former one, name and files,
/// until the new one has been listed.
///
/// Whoever types into it searches: then it shows what is found in place of the list, until Escape
/// or the last letter is gone. Main thread.
class RecentScreenshotsWindow : public FloatingWindow
{
    Q_OBJECT
public:
    /// @param search null where nothing is searched for
    RecentScreenshotsWindow(RecentScreenshots &recent, ScreenshotImages &images,
                            ScreenshotSearch *search = nullptr, QWidget *parent = nullptr);
    ~RecentScreenshotsWindow() override;

    /// Has the list refreshed, and brings the window to the front with the keyboard.
    void presentList();

    /// Null before the window has been shown for the first time.
    RecentScreenshotsView *view() const { return m_view; }

    /// Shows what is found for these words. Without words the field is empty.
    void searchFor(const QString &words);
    void endSearch();

    /// Null while nobody searches.
    RecentSearchView *searchView() const { return m_search ? &m_search->view() : nullptr; }

Q_SIGNALS:
    void actionRequested(const RecentScreenshotAction &action);

    /// The user has typed something to search for, and pauses.
    void searchPaused();
    /// The user wants texts to be searched, or wants them deleted.
    void textsWanted();
    void deletionWanted();

protected:
    void fitInto(const QSize &room) override;
    void keyPressEvent(QKeyEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    void showList();
    void rebuild(const QList<QUrl> &files, const QUrl &folder);

    RecentScreenshots &m_recent;
    ScreenshotSearch *m_finder;
    RecentThumbnails m_thumbnails;
    RecentScreenshotsView *m_view = nullptr;
    std::unique_ptr<RecentSearch> m_search;
};
