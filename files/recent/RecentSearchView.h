// SPDX-License-Identifier: MIT
#pragma once

#include "files/recent/RecentScreenshotRow.h"
#include "search/SearchIndex.h"

#include <QList>

class BezelButton;
class QLabel;
class QScrollArea;
class QVBoxLayout;
class SearchField;

/// The content of the recent screenshots' window during a search: the field with the words, a row
/// for each screenshot found, and whether their texts are searched. Main thread.
class RecentSearchView : public PaletteView
{
    Q_OBJECT
public:
    explicit RecentSearchView(RecentScreenshotRow::OnAction onAction, QWidget *parent = nullptr);

    SearchField &field() const { return *m_field; }

    /// Shows exactly these screenshots. Rows that already exist are kept. Returns the new rows,
    /// whose pictures the caller sets.
    QList<RecentScreenshotRow *> setHits(const QList<SearchHit> &hits);

    /// Top to bottom.
    const QList<RecentScreenshotRow *> &rows() const { return m_rows; }

    /// Shows what is searched.
    void setKeepsTexts(bool keepsTexts, const SearchIndex::Progress &progress);

Q_SIGNALS:
    /// The user wants texts to be searched, or to be deleted.
    void textsWanted();
    void deletionWanted();

private:
    QWidget *footer();
    RecentScreenshotRow *takeRow(const SearchHit &hit);

    RecentScreenshotRow::OnAction m_onAction;
    SearchField *m_field;
    QLabel *m_count;
    QLabel *m_empty;
    QLabel *m_state;
    BezelButton *m_keep;
    BezelButton *m_delete;
    QScrollArea *m_scrollArea;
    QVBoxLayout *m_column;
    QList<RecentScreenshotRow *> m_rows;
};
