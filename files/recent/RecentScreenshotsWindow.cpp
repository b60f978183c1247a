// SPDX-License-Identifier: MIT
#include "files/recent/RecentScreenshotsWindow.h"

#include "files/recent/RecentScreenshots.h"
#include "filesystem/FileUrls.h"

#include <QVBoxLayout>

namespace
{

constexpr QSize contentSize(620, 460);
constexpr QSize leastSize(400, 240);

} // namespace

RecentScreenshotsWindow::RecentScreenshotsWindow(RecentScreenshots &recent,
                                                 ScreenshotImages &images, QWidget *parent)
    : FloatingWindow(QStringLiteral("Recent Screenshots"), Qt::WindowMinMaxButtonsHint, parent)
    , m_recent(recent)
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

void RecentScreenshotsWindow::presentList()
{
    m_recent.refresh();
    showList();
    present();
}

void RecentScreenshotsWindow::fitInto(const QSize &room)
{
    setMinimumSize(leastSize.boundedTo(room));
    resize(size().boundedTo(room));
}

void RecentScreenshotsWindow::showList()
{
    const QUrl folder = FileUrls::standardized(m_recent.folder());
    const QList<QUrl> files = m_recent.urls();
    // The former folder stays, name and rows, until the present one has been listed.
    const bool isChanging = m_view && m_view->folder() != folder && !m_recent.isListed();
    if (!m_view || (!isChanging && (m_view->urls() != files || m_view->folder() != folder)))
        rebuild(files, folder);
    // The picture that is asked for last is read first.
    const auto &rows = m_view->rows();
    for (auto row = rows.crbegin(); row != rows.crend(); ++row)
        m_thumbnails.show((*row)->url(), (*row)->thumbnail());
}

void RecentScreenshotsWindow::rebuild(const QList<QUrl> &files, const QUrl &folder)
{
    RecentScreenshotsView *old = m_view;
    const int position = old ? old->scrollPosition() : 0;
    const int focused = old ? old->focusedButton() : -1;
    // The list has been looked up in the background, and is once more after each change.
    m_view = new RecentScreenshotsView(
        files, folder,
        [this](const RecentScreenshotAction &action) { Q_EMIT actionRequested(action); },
        RecentScreenshotsView::Files::AreThere);
    if (old) {
        // It may be one of its buttons that had the list made anew.
        old->hide();
        layout()->removeWidget(old);
        old->deleteLater();
    }
    layout()->addWidget(m_view);
    m_view->show();
    layout()->activate();
    m_view->setScrollPosition(position);
    // No button is in focus until the user goes to one.
    if (!m_view->setFocusedButton(focused))
        setFocus();
}
