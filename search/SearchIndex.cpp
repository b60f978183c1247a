// SPDX-License-Identifier: MIT
#include "search/SearchIndex.h"

#include "filesystem/FileUrls.h"
#include "search/matchingLine.h"
#include "search/searchTerms.h"
#include "search/secrets.h"

#include <QHash>
#include <QSet>

using namespace Qt::StringLiterals;

namespace
{

/// How many times more hits are looked up than are wanted, because some files may be gone.
constexpr int reserve = 2;

} // namespace

SearchIndex::SearchIndex(const QString &folder) : m_store(folder), m_tables(m_store) {}

/// Does the work in one transaction. If the database is broken, tries once more with a new one.
template <typename Work>
bool SearchIndex::change(Work work)
{
    constexpr int mostTries = 2;
    for (int tries = 0; tries < mostTries; ++tries) {
        if (!m_store.isOpen() && !m_store.open(SearchStore::Missing::Make))
            return false;
        if (m_store.begin() && m_tables.prepareWords() && work() && m_store.commit())
            return true;
        m_store.rollBack();
        if (!m_store.isBroken() || !m_store.setAside())
            return false;
        m_isBegunAnew = true;
    }
    return false;
}

bool SearchIndex::add(const QList<Entry> &entries)
{
    return change([&] {
        for (const Entry &entry : entries) {
            if (!addOne(entry))
                return false;
        }
        return true;
    });
}

bool SearchIndex::addOne(const Entry &entry)
{
    if (const std::optional<Row> row = m_tables.rowOf(entry.file))
        return m_tables.update(*row, entry);
    return !m_store.isBroken() && m_tables.insert(entry);
}

bool SearchIndex::setFolder(const QUrl &folder, const QList<Entry> &entries)
{
    const auto key = [](const FileIdentity &file) { return std::pair(file.serial, file.made); };
    QHash<std::pair<quint64, qint64>, const Entry *> there;
    for (const Entry &entry : entries)
        there.insert(key(entry.file), &entry);
    const bool isDone = change([&] {
        const std::optional<QList<Row>> rows = m_tables.all();
        if (!rows)
            return false;
        QSet<const Entry *> known;
        for (const Row &row : *rows) {
            if (const Entry *entry = there.value(key(row.entry.file))) {
                known << entry;
                if (!m_tables.update(row, *entry))
                    return false;
            } else if (FileUrls::parentFolder(row.entry.url) == folder ||
                       !(row.isThere() || row.isOutOfReach())) {
                if (!m_tables.takeOut(row))
                    return false;
            }
        }
        // Oldest first, so that newer files get higher numbers.
        for (auto entry = entries.crbegin(); entry != entries.crend(); ++entry) {
            if (!known.contains(&*entry) && !m_tables.insert(*entry))
                return false;
        }
        return true;
    });
    if (isDone)
        m_isBegunAnew = false;
    return isDone;
}

bool SearchIndex::moved(const QUrl &from, const QUrl &to, Place place)
{
    const std::optional<FileIdentity> file = fileIdentity(to.toLocalFile());
    if (!file)
        return false;
    return change([&] {
        // A move to another disk copies the file, which makes it another file.
        std::optional<Row> row = m_tables.rowOf(*file);
        if (!row)
            row = m_tables.rowAt(from);
        if (!row)
            return !m_store.isBroken() &&
                   (place == Place::Trash || m_tables.insert({to, *file, {}}));
        return m_tables.update(*row, {to, *file, row->entry.application}) &&
               m_tables.setInTrash(*row, place == Place::Trash);
    });
}

bool SearchIndex::renamed(const QList<Entry> &entries)
{
    return !exists() || change([&] {
        for (const Entry &entry : entries) {
            const std::optional<Row> row = m_tables.rowOf(entry.file);
            if (m_store.isBroken() || (row && !m_tables.update(*row, entry)))
                return false;
        }
        return true;
    });
}

bool SearchIndex::setText(const FileIdentity &file, const QStringList &lines)
{
    QString text = withoutSecrets(lines).join(u'\n');
    return change([&] {
        const std::optional<Row> row = m_tables.rowOf(file);
        if (!row || row->entry.file.modified > file.modified)
            return !m_store.isBroken();
        return m_tables.setText(*row, file, text);
    });
}

std::optional<SearchIndex::Entry> SearchIndex::nextUnread()
{
    std::optional<Row> next;
    change([&] {
        next = m_tables.newestUnread();
        return !m_store.isBroken();
    });
    return next ? std::optional(next->entry) : std::nullopt;
}

SearchIndex::Progress SearchIndex::progress()
{
    std::optional<Progress> progress;
    change([&] {
        progress = m_tables.count();
        return progress.has_value();
    });
    return progress.value_or(Progress());
}

QList<SearchHit> SearchIndex::find(const QString &words, int limit)
{
    const QStringList terms = SearchTerms::ofQuery(words);
    if (terms.isEmpty() || limit <= 0)
        return {};
    if (!m_store.isOpen() && !m_store.open(SearchStore::Missing::Leave))
        return {};
    const QList<SearchHit> found = hits(terms, limit);
    if (m_store.isBroken()) {
        m_store.setAside();
        m_isBegunAnew = true;
    }
    return found;
}

QList<SearchHit> SearchIndex::hits(const QStringList &terms, int limit)
{
    // Nearly every text matches a single letter, so there the newest hits are as good as any.
    using Ranked = ScreenshotTables::Ranked;
    const bool isRanked = terms.size() > 1 || terms.constFirst().size() > 1;
    const QList<Row> rows = m_tables.matching(SearchTerms::expression(terms),
                                              isRanked ? Ranked::Yes : Ranked::No, limit * reserve);
    QList<SearchHit> hits;
    for (const Row &row : rows) {
        if (hits.size() == limit)
            break;
        if (!row.isThere())
            continue;
        const QString text = m_tables.textOf(row.id).value_or(QString());
        hits.append({FileUrls::standardized(row.entry.url), matchingLine(text, terms)});
    }
    return hits;
}

bool SearchIndex::forget()
{
    return m_store.remove();
}
