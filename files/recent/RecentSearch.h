// SPDX-License-Identifier: MIT
#pragma once

#include "files/recent/RecentSearchView.h"

#include <QObject>
#include <QTimer>

class RecentThumbnails;
class ScreenshotSearch;

/// A search in the recent screenshots' window, from the first key to the last: it asks for what is
/// found while the user types, and shows it. Main thread.
class RecentSearch : public QObject
{
    Q_OBJECT
public:
    /// Both outlive this object. Makes the view, which becomes its new parent's.
    RecentSearch(ScreenshotSearch &search, RecentThumbnails &thumbnails,
                 RecentScreenshotRow::OnAction onAction, QObject *parent = nullptr);

    RecentSearchView &view() const { return *m_view; }

    /// Searches for these words, which stand in the field then.
    void setWords(const QString &words);

Q_SIGNALS:
    /// The user has taken back the last letter.
    void emptied();
    /// The user types no more, for the moment.
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
