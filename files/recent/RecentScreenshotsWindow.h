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

/// The window "Recent Screenshots". While it is shown, its content is rebuilt whenever the list
/// changes. After a change of folder it keeps showing the previous one, name and files, until the
/// new one has been listed.
///
/// When the user comes back to it from another program, which may have renamed files, it looks
/// again.
///
/// Typing into it starts a search. It then shows the results instead of the list, until Escape is
/// pressed or the last letter is deleted. Main thread.
class RecentScreenshotsWindow : public FloatingWindow
{
    Q_OBJECT
public:
    /// @param search null if there is no search
    RecentScreenshotsWindow(RecentScreenshots &recent, ScreenshotImages &images,
                            ScreenshotSearch *search = nullptr, QWidget *parent = nullptr);
    ~RecentScreenshotsWindow() override;

    /// Refreshes the list, and brings the window to the front with keyboard focus.
    void presentList();

    /// Null before the window is shown for the first time.
    RecentScreenshotsView *view() const { return m_view; }

    /// Shows the results for these words. Without words the search field is empty.
    void searchFor(const QString &words);
    void endSearch();

    /// Null without a search.
    RecentSearchView *searchView() const { return m_search ? &m_search->view() : nullptr; }

Q_SIGNALS:
    void actionRequested(const RecentScreenshotAction &action);

    /// The user has typed words to search for, and has paused.
    void searchPaused();
    /// The user wants texts to be searched, or to be deleted.
    void textsWanted();
    void deletionWanted();

protected:
    void fitInto(const QSize &room) override;
    void keyPressEvent(QKeyEvent *event) override;
    void hideEvent(QHideEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void showList();
    void rebuild(const QList<QUrl> &files, const QUrl &folder);

    RecentScreenshots &m_recent;
    ScreenshotSearch *m_finder;
    RecentThumbnails m_thumbnails;
    RecentScreenshotsView *m_view = nullptr;
    std::unique_ptr<RecentSearch> m_search;
};
