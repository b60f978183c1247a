// SPDX-License-Identifier: MIT
#include "files/recent/RecentScreenshotsWindow.h"

#include "files/recent/RecentScreenshots.h"
#include "files/recent/SearchField.h"
#include "filesystem/FileUrls.h"
#include "search/ScreenshotSearch.h"

#include <QKeyEvent>
#include <QVBoxLayout>

using namespace Qt::StringLiterals;

namespace
{

constexpr QSize contentSize(620, 460);
constexpr QSize leastSize(400, 240);

} // namespace

RecentScreenshotsWindow::RecentScreenshotsWindow(RecentScreenshots &recent,
                                                 ScreenshotImages &images, ScreenshotSearch *search,
                                                 QWidget *parent)
    : FloatingWindow(u"Recent Screenshots"_s, Qt::WindowMinMaxButtonsHint, parent)
    , m_recent(recent)
    , m_finder(search)
    , m_thumbnails(images, RecentScreenshotRow::thumbnailSize)
{
    setMinimumSize(leastSize);
    resize(contentSize);
    auto *content = new QVBoxLayout(this);
    content->setContentsMargins({});
    connect(&m_recent, &RecentScreenshots::refreshed, this, [this] {
        if (isVisible())
            showList();
    });
}

RecentScreenshotsWindow::~RecentScreenshotsWindow() = default;

void RecentScreenshotsWindow::presentList()
{
    endSearch();
    m_recent.refresh();
    showList();
    present();
}

void RecentScreenshotsWindow::fitInto(const QSize &room)
{
    setMinimumSize(leastSize.boundedTo(room));
    resize(size().boundedTo(room));
}

void RecentScreenshotsWindow::keyPressEvent(QKeyEvent *event)
{
    constexpr Qt::KeyboardModifiers shortcuts =
        Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier;
    const QString text = event->text();
    const bool isText = !text.isEmpty() && !text[0].isSpace() && text[0].isPrint() &&
                        !(event->modifiers() & shortcuts);
    if (event->matches(QKeySequence::Find))
        searchFor({});
    else if (event->key() == Qt::Key_Escape && m_search)
        endSearch();
    else if (isText && !m_search)
        searchFor(text);
    else
        FloatingWindow::keyPressEvent(event);
}

/// The window starts without a search the next time.
void RecentScreenshotsWindow::hideEvent(QHideEvent *event)
{
    endSearch();
    FloatingWindow::hideEvent(event);
}

void RecentScreenshotsWindow::changeEvent(QEvent *event)
{
    FloatingWindow::changeEvent(event);
    if (event->type() != QEvent::ActivationChange || !isActiveWindow() || !isVisible())
        return;
    m_recent.refresh();
    if (m_search)
        m_finder->lookAgain();
}

void RecentScreenshotsWindow::searchFor(const QString &words)
{
    if (!m_finder)
        return;
    if (!m_search) {
        m_search = std::make_unique<RecentSearch>(
            *m_finder, m_thumbnails,
            [this](const RecentScreenshotAction &action) { Q_EMIT actionRequested(action); });
        connect(m_search.get(), &RecentSearch::emptied, this, &RecentScreenshotsWindow::endSearch);
        connect(m_search.get(), &RecentSearch::paused, this,
                &RecentScreenshotsWindow::searchPaused);
        RecentSearchView &view = m_search->view();
        connect(&view, &RecentSearchView::textsWanted, this, &RecentScreenshotsWindow::textsWanted);
        connect(&view, &RecentSearchView::deletionWanted, this,
                &RecentScreenshotsWindow::deletionWanted);
        if (m_view)
            m_view->hide();
        layout()->addWidget(&view);
        view.show();
    }
    m_search->view().field().setFocus();
    m_search->setWords(words);
}

void RecentScreenshotsWindow::endSearch()
{
    if (!m_search)
        return;
    // The search field may have ended the search. The search must be destroyed before the view that
    // it fills.
    RecentSearchView &view = m_search->view();
    m_search.release()->deleteLater();
    view.hide();
    layout()->removeWidget(&view);
    view.deleteLater();
    if (m_view)
        m_view->show();
    setFocus();
    if (isVisible())
        showList();
}

void RecentScreenshotsWindow::showList()
{
    if (m_search)
        return;
    const QUrl folder = FileUrls::standardized(m_recent.folder());
    const QList<QUrl> files = m_recent.urls();
    // The previous folder's name and rows stay until the current one has been listed.
    const bool isChanging = m_view && m_view->folder() != folder && !m_recent.isListed();
    if (!m_view || (!isChanging && (m_view->urls() != files || m_view->folder() != folder)))
        rebuild(files, folder);
    // The thumbnail requested last is read first.
    const auto &rows = m_view->rows();
    for (auto row = rows.crbegin(); row != rows.crend(); ++row)
        m_thumbnails.show((*row)->url(), (*row)->thumbnail());
}

void RecentScreenshotsWindow::rebuild(const QList<QUrl> &files, const QUrl &folder)
{
    RecentScreenshotsView *old = m_view;
    const int position = old ? old->scrollPosition() : 0;
    const int focused = old ? old->focusedButton() : -1;
    // The list was checked in the background, and is checked again after each change.
    m_view = new RecentScreenshotsView(
        files, folder,
        [this](const RecentScreenshotAction &action) { Q_EMIT actionRequested(action); },
        RecentScreenshotsView::Files::AreThere);
    if (old) {
        // One of its buttons may have caused this rebuild.
        old->hide();
        layout()->removeWidget(old);
        old->deleteLater();
    }
    layout()->addWidget(m_view);
    m_view->show();
    layout()->activate();
    m_view->setScrollPosition(position);
    // No button has the focus until the user moves to one.
    if (!m_view->setFocusedButton(focused))
        setFocus();
}
