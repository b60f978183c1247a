// SPDX-License-Identifier: MIT
#include "files/recent/RecentSearchView.h"

#include "files/recent/SearchField.h"
#include "files/recent/recentLabels.h"
#include "style/BezelButton.h"
#include "style/ElidedLabel.h"
#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"

#include <QHBoxLayout>
#include <QLocale>
#include <QScrollArea>
#include <QScrollBar>

using namespace Qt::StringLiterals;

namespace
{

// In points. Except for the footer, the list has the same place as without a search.
constexpr int topMargin = 22;
constexpr int sideMargin = 24;
constexpr int bottomMargin = 12;
constexpr int titleToField = 6;
constexpr int fieldToList = 10;
constexpr int listToFooter = 8;
constexpr int rowSpacing = 8;
constexpr int listInset = 2;

QString number(int count)
{
    return QLocale(QLocale::English).toString(count);
}

QString stateText(bool keepsTexts, const SearchIndex::Progress &progress)
{
    if (!keepsTexts)
        return u"Searching names only."_s;
    if (progress.read < progress.all) {
        return u"Searching names and text. %1 of %2 screenshots have been read."_s.arg(
            number(progress.read), number(progress.all));
    }
    return u"Searching names and text."_s;
}

} // namespace

RecentSearchView::RecentSearchView(RecentScreenshotRow::OnAction onAction, QWidget *parent)
    : PaletteView(parent)
    , m_onAction(std::move(onAction))
    , m_field(new SearchField)
    , m_count(recentCountLabel({}))
    , m_empty(recentEmptyLabel(u"No screenshots found"_s))
    , m_state(new ElidedLabel(Qt::ElideRight))
    , m_keep(new BezelButton(u"Search Text Too"_s))
    , m_delete(new BezelButton(u"Delete Remembered Text"_s))
    , m_scrollArea(new QScrollArea)
{
    auto *list = new QWidget;
    m_column = new QVBoxLayout(list);
    m_column->setContentsMargins(0, listInset, 0, listInset);
    m_column->setSpacing(rowSpacing);
    m_column->addWidget(m_empty);
    m_column->addStretch();
    m_empty->hide();
    m_scrollArea->setFrameShape(QFrame::NoFrame);
    m_scrollArea->setFocusPolicy(Qt::NoFocus);
    m_scrollArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scrollArea->setWidgetResizable(true);
    m_scrollArea->setWidget(list);
    list->setAutoFillBackground(false);
    m_scrollArea->viewport()->setAutoFillBackground(false);

    auto *titleLine = new QHBoxLayout;
    titleLine->addWidget(recentTitleLabel());
    titleLine->addStretch();
    titleLine->addWidget(m_count, 0, Qt::AlignVCenter);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(sideMargin, topMargin, sideMargin, bottomMargin);
    column->setSpacing(0);
    column->addLayout(titleLine);
    column->addSpacing(titleToField);
    column->addWidget(m_field);
    column->addSpacing(fieldToList);
    column->addWidget(m_scrollArea, 1);
    column->addSpacing(listToFooter);
    column->addWidget(footer());
    connect(m_keep, &BezelButton::clicked, this, &RecentSearchView::textsWanted);
    connect(m_delete, &BezelButton::clicked, this, &RecentSearchView::deletionWanted);
    setKeepsTexts(false, {});
}

QWidget *RecentSearchView::footer()
{
    setRecentStyle(m_state, systemFont(11), VelmoraPalette::secondaryText());
    m_delete->setToolTip(u"Deletes the text of all screenshots that Velmora remembers"_s);
    auto *footer = new QWidget;
    auto *line = new QHBoxLayout(footer);
    line->setContentsMargins({});
    line->addWidget(m_state, 1);
    line->addWidget(m_keep);
    line->addWidget(m_delete);
    return footer;
}

QList<RecentScreenshotRow *> RecentSearchView::setHits(const QList<SearchHit> &hits)
{
    const QList<RecentScreenshotRow *> before = m_rows;
    QList<RecentScreenshotRow *> rows;
    QList<RecentScreenshotRow *> fresh;
    for (const SearchHit &hit : hits) {
        RecentScreenshotRow *row = takeRow(hit);
        if (!row) {
            row = new RecentScreenshotRow(hit.url, m_onAction, hit.line);
            fresh << row;
        }
        rows << row;
        m_column->insertWidget(int(rows.size()), row);
        row->show();
    }
    for (RecentScreenshotRow *left : std::as_const(m_rows)) {
        // One of its buttons may have changed the results.
        left->hide();
        m_column->removeWidget(left);
        left->deleteLater();
    }
    m_rows = rows;
    m_empty->setVisible(rows.isEmpty());
    m_count->setText(number(int(rows.size())) + u" found"_s);
    if (before != rows)
        m_scrollArea->verticalScrollBar()->setValue(0);
    return fresh;
}

RecentScreenshotRow *RecentSearchView::takeRow(const SearchHit &hit)
{
    for (RecentScreenshotRow *row : std::as_const(m_rows)) {
        if (row->url() == hit.url && row->line() == hit.line) {
            m_rows.removeOne(row);
            return row;
        }
    }
    return nullptr;
}

void RecentSearchView::setKeepsTexts(bool keepsTexts, const SearchIndex::Progress &progress)
{
    m_state->setText(stateText(keepsTexts, progress));
    m_keep->setVisible(!keepsTexts);
    m_delete->setVisible(keepsTexts);
}
