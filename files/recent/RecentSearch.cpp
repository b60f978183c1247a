// SPDX-License-Identifier: MIT
#include "files/recent/RecentSearch.h"

#include "core/whenFinished.h"
#include "files/recent/RecentThumbnails.h"
#include "files/recent/SearchField.h"
#include "search/ScreenshotSearch.h"

using namespace std::chrono_literals;

namespace
{

/// More rows than anybody scrolls through. Another word narrows the search.
constexpr int mostHits = 30;

/// A pause in typing.
constexpr auto pauseTime = 800ms;

/// While screenshots are being read, the results change all the time.
constexpr auto timeBetweenChanges = 1s;

} // namespace

RecentSearch::RecentSearch(ScreenshotSearch &search, RecentThumbnails &thumbnails,
                           RecentScreenshotRow::OnAction onAction, QObject *parent)
    : QObject(parent)
    , m_search(search)
    , m_thumbnails(thumbnails)
    , m_view(new RecentSearchView(std::move(onAction)))
{
    m_pause.setSingleShot(true);
    m_pause.callOnTimeout(this, &RecentSearch::paused);
    m_change.setSingleShot(true);
    m_change.callOnTimeout(this, [this] {
        find();
        showState();
    });
    connect(&m_view->field(), &QLineEdit::textEdited, this, &RecentSearch::edited);
    connect(&m_search, &ScreenshotSearch::changed, this, [this] {
        if (!m_change.isActive())
            m_change.start(timeBetweenChanges);
    });
    m_search.lookAgain();
    showState();
}

void RecentSearch::setWords(const QString &words)
{
    m_view->field().setText(words);
    if (!words.isEmpty())
        edited(words);
}

void RecentSearch::edited(const QString &words)
{
    m_words = words;
    if (words.isEmpty()) {
        Q_EMIT emptied();
        return;
    }
    m_pause.start(pauseTime);
    find();
}

/// One query at a time. If the user types in the meantime, another one follows.
void RecentSearch::find()
{
    m_isOutdated = m_isAsking;
    if (m_isAsking || m_words.isEmpty())
        return;
    m_isAsking = true;
    whenFinished(m_search.find(m_words, mostHits), this, [this](const QList<SearchHit> &hits) {
        m_isAsking = false;
        take(hits);
        if (m_isOutdated)
            find();
    });
}

void RecentSearch::take(const QList<SearchHit> &hits)
{
    const QList<RecentScreenshotRow *> fresh = m_view->setHits(hits);
    // The thumbnail requested last is read first.
    for (auto row = fresh.crbegin(); row != fresh.crend(); ++row)
        m_thumbnails.show((*row)->url(), (*row)->thumbnail());
}

void RecentSearch::showState()
{
    if (!m_search.keepsTexts()) {
        m_view->setKeepsTexts(false, {});
        return;
    }
    whenFinished(m_search.progress(), this, [this](const SearchIndex::Progress &progress) {
        m_view->setKeepsTexts(m_search.keepsTexts(), progress);
    });
}
