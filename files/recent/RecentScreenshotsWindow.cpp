#include "files/recent/RecentScreenshotsWindow.h"

#include "files/recent/RecentScreenshots.h"
#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"

#include <QScreen>
#include <QShortcut>
#include <QVBoxLayout>

namespace
{

constexpr QSize contentSize(620, 460);
constexpr QSize leastSize(400, 240);
/// What a title bar may add to the height; it is known only when the window stands on the screen.
constexpr int frameAllowance = 30;

constexpr Qt::WindowFlags windowKind = Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint |
                                       Qt::WindowSystemMenuHint | Qt::WindowMinMaxButtonsHint |
                                       Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint;

} // namespace

RecentScreenshotsWindow::RecentScreenshotsWindow(RecentScreenshots &recent,
                                                 ScreenshotImages &images, QWidget *parent)
    : QWidget(parent, windowKind)
    , m_recent(recent)
    , m_thumbnails(images, RecentScreenshotRow::thumbnailSize)
{
    setAttribute(Qt::WA_QuitOnClose, false);
    setWindowTitle(QStringLiteral("Recent Screenshots"));
    setPalette(VelmoraPalette::lightPalette());
    setFont(systemFont(13));
    setMinimumSize(leastSize);
    resize(contentSize);
    placeOnScreen();
    auto *content = new QVBoxLayout(this);
    content->setContentsMargins({});
    connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this, &QWidget::close);
    connect(&m_recent, &RecentScreenshots::refreshed, this, [this] {
        if (isVisible())
            showList();
    });
}

void RecentScreenshotsWindow::present()
{
    m_recent.refresh();
    showList();
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void RecentScreenshotsWindow::showList()
{
    const bool isOutdated =
        !m_view || m_view->urls() != m_recent.urls() || m_view->folder() != m_recent.folder();
    if (isOutdated)
        rebuild();
    // The picture that is asked for last is read first.
    const auto &rows = m_view->rows();
    for (auto row = rows.crbegin(); row != rows.crend(); ++row)
        m_thumbnails.show((*row)->url(), (*row)->thumbnail());
}

void RecentScreenshotsWindow::rebuild()
{
    RecentScreenshotsView *old = m_view;
    const int position = old ? old->scrollPosition() : 0;
    const int focused = old ? old->focusedButton() : -1;
    m_view = new RecentScreenshotsView(
        m_recent.urls(), m_recent.folder(),
        [this](const RecentScreenshotAction &action) { Q_EMIT actionRequested(action); });
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

void RecentScreenshotsWindow::placeOnScreen()
{
    const QRect room = screen()->availableGeometry();
    QRect framed({}, size() + QSize(0, frameAllowance));
    framed.moveCenter(room.center());
    move(framed.topLeft());
}
