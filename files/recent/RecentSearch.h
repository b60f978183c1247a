// SPDX-License-Identifier: MIT
#pragma once

#include "files/recent/RecentSearchView.h"

#include <QObject>
#include <QTimer>

class RecentThumbnails;
class ScreenshotSearch;

/// A search in the recent screenshots' window, from the first key to the last. It queries while the
/// user types, and shows the results. Main thread.
class RecentSearch : public QObject
{
    Q_OBJECT
public:
    /// Both must outlive this object. Creates the view, whose later parent owns it.
    RecentSearch(ScreenshotSearch &search, RecentThumbnails &thumbnails,
                 RecentScreenshotRow::OnAction onAction, QObject *parent = nullptr);

    RecentSearchView &view() const { return *m_view; }

    /// Puts these words into the field and searches for them.
    void setWords(const QString &words);

Q_SIGNALS:
    /// The user has deleted the last letter.
    void emptied();
    /// The user has paused typing.
    void paused();

private:
    void edited(const QString &words);
    void find();
    void take(const QList<SearchHit> &hits);
    void showState();

    ScreenshotSearch &m_search;
    RecentThumbnails &m_thumbnails;
    RecentSearchView *m_view;
    QString m_words;
    bool m_isAsking = false;
    bool m_isOutdated = false;
    QTimer m_pause;
    QTimer m_change;
};
