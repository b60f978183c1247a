// SPDX-License-Identifier: MIT
#include "files/recent/RecentScreenshotsView.h"

#include "files/recent/recentLabels.h"
#include "filesystem/FileUrls.h"
#include "style/BezelButton.h"
#include "style/ElidedLabel.h"
#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"

#include <QHBoxLayout>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

constexpr int topMargin = 22;
constexpr int sideMargin = 24;
constexpr int leastTitleToCount = 16;
constexpr int titleToFolder = 6;
constexpr int folderToList = 18;
constexpr int rowSpacing = 8;
constexpr int listInset = 2;

QLabel *folderLabel(const QUrl &folder)
{
    const QString path = folder.toLocalFile();
    auto *label = new ElidedLabel(Qt::ElideMiddle);
    label->setText(u"Folder: "_s + path);
    label->setToolTip(path);
    setRecentStyle(label, monospacedSystemFont(12), VelmoraPalette::tertiaryText());
    return label;
}

} // namespace

RecentScreenshotsView::RecentScreenshotsView(const QList<QUrl> &urls, const QUrl &folder,
                                             const OnAction &onAction, Files files, QWidget *parent)
    : PaletteView(parent), m_urls(urls), m_folder(folder), m_scrollArea(new QScrollArea)
{
    for (const QUrl &url : urls) {
        if (files == Files::AreThere || FileUrls::exists(url))
            m_rows << new RecentScreenshotRow(url, onAction);
    }
    m_scrollArea->setFrameShape(QFrame::NoFrame);
    m_scrollArea->setFocusPolicy(Qt::NoFocus);
    m_scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scrollArea->setWidgetResizable(true);
    m_scrollArea->setWidget(list());
    m_scrollArea->widget()->setAutoFillBackground(false);
    m_scrollArea->viewport()->setAutoFillBackground(false);

    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(sideMargin, topMargin, sideMargin, sideMargin);
    column->setSpacing(0);
    column->addWidget(header());
    column->addSpacing(folderToList);
    column->addWidget(m_scrollArea, 1);
}

QWidget *RecentScreenshotsView::header() const
{
    auto *titleLine = new QHBoxLayout;
    titleLine->setSpacing(0);
    titleLine->addWidget(recentTitleLabel());
    titleLine->addStretch();
    titleLine->addSpacing(leastTitleToCount);
    const QString count = QString::number(m_rows.size()) + u" items"_s;
    titleLine->addWidget(recentCountLabel(count), 0, Qt::AlignVCenter);

    auto *header = new QWidget;
    auto *column = new QVBoxLayout(header);
    column->setContentsMargins({});
    column->setSpacing(titleToFolder);
    column->addLayout(titleLine);
    column->addWidget(folderLabel(m_folder));
    return header;
}

QWidget *RecentScreenshotsView::list() const
{
    auto *list = new QWidget;
    auto *column = new QVBoxLayout(list);
    column->setContentsMargins(0, listInset, 0, listInset);
    column->setSpacing(rowSpacing);
    for (RecentScreenshotRow *row : m_rows)
        column->addWidget(row);
    if (m_rows.isEmpty())
        column->addWidget(recentEmptyLabel(u"No recent screenshots"_s));
    else
        column->addStretch();
    return list;
}

int RecentScreenshotsView::scrollPosition() const
{
    return m_scrollArea->verticalScrollBar()->value();
}

void RecentScreenshotsView::setScrollPosition(int position)
{
    m_scrollArea->verticalScrollBar()->setValue(position);
}

int RecentScreenshotsView::focusedButton() const
{
    return int(findChildren<BezelButton *>().indexOf(qobject_cast<BezelButton *>(focusWidget())));
}

bool RecentScreenshotsView::setFocusedButton(int index)
{
    const auto buttons = findChildren<BezelButton *>();
    if (index < 0 || buttons.isEmpty())
        return false;
    buttons.at(std::min<qsizetype>(index, buttons.size() - 1))->setFocus(Qt::OtherFocusReason);
    return true;
}
