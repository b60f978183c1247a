// SPDX-License-Identifier: MIT
#include "search/SearchIndex.h"

#include "filesystem/FileUrls.h"
#include "search/matchingLine.h"
#include "search/searchTerms.h"
#include "search/secrets.h"

#include <QFileInfo>
#include <QHash>
#include <QSet>

using namespace Qt::StringLiterals;

namespace
{

/// Only the newest matches are ranked: ranking takes the most time, and nobody looks for the
/// thousandth hit.
constexpr int mostRanked = 1000;

/// How many times more hits are looked up than are wanted, because some files may be gone.
constexpr int reserve = 2;

/// Changes whenever texts must be split into words again: with the code that splits them, and with
/// Unicode's tables.
int wordsVersion()
{
    constexpr int ofCode = 1;
    return ofCode * 1000 + int(QChar::currentUnicodeVersion());
}

constexpr auto columns =
    "SELECT id, device, serial, made, size, modified, path, application, is_read, is_in_trash"
    " FROM screenshots ";

QString select(const char *condition)
{
    return QLatin1String(columns) + QLatin1String(condition);
}

} // namespace

struct SearchIndex::Row {
    qint64 id = 0;
    Entry entry;
    bool isRead = false;
    bool isInTrash = false;

    static Row of(const QSqlQuery &query)
    {
        Row row;
        row.id = query.value(0).toLongLong();
        FileIdentity &file = row.entry.file;
        file.device = query.value(1).toULongLong();
        file.serial = query.value(2).toULongLong();
        file.made = query.value(3).toLongLong();
        file.size = query.value(4).toLongLong();
        file.modified = query.value(5).toLongLong();
        row.entry.url = QUrl::fromLocalFile(query.value(6).toString());
        row.entry.application = query.value(7).toString();
        row.isRead = query.value(8).toBool();
        row.isInTrash = query.value(9).toBool();
        return row;
    }

    /// Device numbers change when the computer restarts, so they are not compared.
    bool isFile(const FileIdentity &other) const
    {
        return entry.file.serial == other.serial && entry.file.made == other.made;
    }

    bool isThere() const
    {
        const auto there = fileIdentity(entry.url.toLocalFile());
        return there && isFile(*there);
    }

    bool isOutOfReach() const { return !FileUrls::exists(FileUrls::parentFolder(entry.url)); }
};

SearchIndex::SearchIndex(const QString &folder) : m_store(folder) {}

/// Does the work in one transaction. If the database is broken, tries once more with a new one.
template <typename Work>
bool SearchIndex::change(Work work)
{
    constexpr int mostTries = 2;
    for (int tries = 0; tries < mostTries; ++tries) {
        if (!m_store.isOpen() && !m_store.open(SearchStore::Missing::Make))
            return false;
        if (m_store.begin() && prepareWords() && work() && m_store.commit())
            return true;
        m_store.rollBack();
        if (!m_store.isBroken() || !m_store.setAside())
            return false;
        m_isBegunAnew = true;
    }
    return false;
}

/// If an older version of the program made the words, they are made again from the texts.
bool SearchIndex::prepareWords()
{
    auto version = m_store.run(u"PRAGMA user_version"_s);
    if (!version || !version->next())
        return false;
    if (version->value(0).toInt() == wordsVersion())
        return true;
    version.reset();
    QList<Row> rows;
    auto all = m_store.run(select("ORDER BY id"));
    while (all && all->next())
        rows << Row::of(*all);
    bool isDone = all && m_store.run(u"INSERT INTO words(words) VALUES('delete-all')"_s);
    all.reset();
    for (const Row &row : rows) {
        const std::optional<QString> text = textOf(row.id);
        isDone = isDone && text &&
                 writeWords(row.id,
                            u"INSERT INTO words(rowid, name, application, text)"
                            " VALUES(?, ?, ?, ?)"_s,
                            row, *text);
    }
    return isDone && m_store.run(u"PRAGMA user_version=%1"_s.arg(wordsVersion()));
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
    if (const std::optional<Row> row = rowOf(entry.file))
        return update(*row, entry);
    return !m_store.isBroken() && insert(entry);
}

bool SearchIndex::setFolder(const QUrl &folder, const QList<Entry> &entries)
{
    const auto key = [](const FileIdentity &file) { return std::pair(file.serial, file.made); };
    QHash<std::pair<quint64, qint64>, const Entry *> there;
    for (const Entry &entry : entries)
        there.insert(key(entry.file), &entry);
    const bool isDone = change([&] {
        QList<Row> rows;
        auto all = m_store.run(select(""));
        if (!all)
            return false;
        while (all->next())
            rows << Row::of(*all);
        all.reset();
        QSet<const Entry *> known;
        for (const Row &row : rows) {
            if (const Entry *entry = there.value(key(row.entry.file))) {
                known << entry;
                if (!update(row, *entry))
                    return false;
            } else if (FileUrls::parentFolder(row.entry.url) == folder ||
                       !(row.isThere() || row.isOutOfReach())) {
                if (!takeOut(row))
                    return false;
            }
        }
        // Oldest first, so that newer files get higher numbers.
        for (auto entry = entries.crbegin(); entry != entries.crend(); ++entry) {
            if (!known.contains(&*entry) && !insert(*entry))
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
        std::optional<Row> row = rowOf(*file);
        if (!row)
            row = rowAt(from);
        if (!row)
            return !m_store.isBroken() && (place == Place::Trash || insert({to, *file, {}}));
        return update(*row, {to, *file, row->entry.application}) &&
               m_store.run(u"UPDATE screenshots SET is_in_trash=? WHERE id=?"_s,
                           {place == Place::Trash, row->id});
    });
}

bool SearchIndex::renamed(const QList<Entry> &entries)
{
    return !exists() || change([&] {
        for (const Entry &entry : entries) {
            const std::optional<Row> row = rowOf(entry.file);
            if (m_store.isBroken() || (row && !update(*row, entry)))
                return false;
        }
        return true;
    });
}

bool SearchIndex::setText(const FileIdentity &file, const QStringList &lines)
{
    QString text = withoutSecrets(lines).join(u'\n');
    return change([&] {
        const std::optional<Row> row = rowOf(file);
        if (!row || row->entry.file.modified > file.modified)
            return !m_store.isBroken();
        const std::optional<QString> old = textOf(row->id);
        return old && replaceWords(*row, *old, *row, text) &&
               m_store.run(u"INSERT OR REPLACE INTO texts(id, text) VALUES(?, ?)"_s,
                           {row->id, text}) &&
               m_store.run(u"UPDATE screenshots SET is_read=1, size=?, modified=? WHERE id=?"_s,
                           {file.size, file.modified, row->id});
    });
}

std::optional<SearchIndex::Entry> SearchIndex::nextUnread()
{
    std::optional<Entry> next;
    change([&] {
        auto found =
            m_store.run(select("WHERE is_read=0 AND is_in_trash=0 ORDER BY modified DESC"));
        while (found && !next && found->next()) {
            const Row row = Row::of(*found);
            if (row.isThere())
                next = row.entry;
        }
        return found.has_value();
    });
    return next;
}

SearchIndex::Progress SearchIndex::progress()
{
    Progress progress;
    change([&] {
        auto counts =
            m_store.run(u"SELECT count(*), sum(is_read) FROM screenshots WHERE is_in_trash=0"_s);
        if (counts && counts->next())
            progress = {counts->value(1).toInt(), counts->value(0).toInt()};
        return counts.has_value();
    });
    return progress;
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
    const bool isRanked = terms.size() > 1 || terms.constFirst().size() > 1;
    const QString statement =
        u"SELECT s.id, s.device, s.serial, s.made, s.size, s.modified, s.path, s.application,"
        " s.is_read, s.is_in_trash FROM (SELECT rowid, %1 AS score FROM words WHERE words MATCH ?"
        " ORDER BY rowid DESC LIMIT %2) AS hit JOIN screenshots AS s ON s.id=hit.rowid"
        " WHERE s.is_in_trash=0 ORDER BY hit.score, s.modified DESC LIMIT %3"_s
            .arg(isRanked ? u"bm25(words, 4.0, 2.0, 1.0)"_s : u"0"_s)
            .arg(mostRanked)
            .arg(limit * reserve);
    auto found = m_store.run(statement, {SearchTerms::expression(terms)});
    QList<Row> rows;
    while (found && found->next())
        rows << Row::of(*found);
    found.reset();
    QList<SearchHit> hits;
    for (const Row &row : rows) {
        if (hits.size() == limit)
            break;
        if (!row.isThere())
            continue;
        const QString text = textOf(row.id).value_or(QString());
        hits.append({FileUrls::standardized(row.entry.url), matchingLine(text, terms)});
    }
    return hits;
}

bool SearchIndex::forget()
{
    return m_store.remove();
}

std::optional<SearchIndex::Row> SearchIndex::rowOf(const FileIdentity &file)
{
    auto found = m_store.run(select("WHERE serial=? AND made=?"),
                             {qlonglong(file.serial), qlonglong(file.made)});
    return found && found->next() ? std::optional(Row::of(*found)) : std::nullopt;
}

std::optional<SearchIndex::Row> SearchIndex::rowAt(const QUrl &url)
{
    auto found = m_store.run(select("WHERE path=?"), {url.toLocalFile()});
    return found && found->next() ? std::optional(Row::of(*found)) : std::nullopt;
}

bool SearchIndex::insert(const Entry &entry)
{
    const FileIdentity &file = entry.file;
    auto made = m_store.run(
        u"INSERT INTO screenshots(device, serial, made, size, modified, path, application)"
        " VALUES(?, ?, ?, ?, ?, ?, ?)"_s,
        {qlonglong(file.device), qlonglong(file.serial), qlonglong(file.made), file.size,
         file.modified, entry.url.toLocalFile(), entry.application});
    if (!made)
        return false;
    Row row;
    row.entry = entry;
    return writeWords(made->lastInsertId().toLongLong(),
                      u"INSERT INTO words(rowid, name, application, text) VALUES(?, ?, ?, ?)"_s,
                      row, {});
}

bool SearchIndex::update(const Row &row, const Entry &entry)
{
    Row next = row;
    next.entry = entry;
    if (entry.application.isEmpty())
        next.entry.application = row.entry.application;
    next.isRead = row.isRead && row.entry.file.size == entry.file.size &&
                  row.entry.file.modified == entry.file.modified;
    const bool isSame = next.entry.url == row.entry.url && next.isRead == row.isRead &&
                        next.entry.application == row.entry.application && !row.isInTrash &&
                        entry.file.sameContent(row.entry.file);
    if (isSame)
        return true;
    const std::optional<QString> text = textOf(row.id);
    const FileIdentity &file = entry.file;
    return text && replaceWords(row, *text, next, *text) &&
           m_store.run(u"UPDATE screenshots SET device=?, serial=?, made=?, size=?, modified=?,"
                       " path=?, application=?, is_read=?, is_in_trash=0 WHERE id=?"_s,
                       {qlonglong(file.device), qlonglong(file.serial), qlonglong(file.made),
                        file.size, file.modified, entry.url.toLocalFile(), next.entry.application,
                        next.isRead, row.id});
}

bool SearchIndex::takeOut(const Row &row)
{
    const std::optional<QString> text = textOf(row.id);
    return text && replaceWords(row, *text, {}, {}) &&
           m_store.run(u"DELETE FROM texts WHERE id=?"_s, {row.id}) &&
           m_store.run(u"DELETE FROM screenshots WHERE id=?"_s, {row.id});
}

bool SearchIndex::writeWords(qint64 id, const QString &statement, const Row &row,
                             const QString &text)
{
    const QString name = FileUrls::baseName(FileUrls::lastPathComponent(row.entry.url));
    return m_store
        .run(statement, {id, SearchTerms::indexed(name),
                         SearchTerms::indexed(row.entry.application), SearchTerms::indexed(text)})
        .has_value();
}

/// The index has no copy of its texts, so it must be given the old text to remove it.
bool SearchIndex::replaceWords(const Row &old, const QString &oldText, const Row &row,
                               const QString &text)
{
    return writeWords(old.id,
                      u"INSERT INTO words(words, rowid, name, application, text)"
                      " VALUES('delete', ?, ?, ?, ?)"_s,
                      old, oldText) &&
           (row.id == 0 ||
            writeWords(row.id,
                       u"INSERT INTO words(rowid, name, application, text) VALUES(?, ?, ?, ?)"_s,
                       row, text));
}

/// Empty if the file has not been read; nothing if the database fails.
std::optional<QString> SearchIndex::textOf(qint64 id)
{
    auto found = m_store.run(u"SELECT text FROM texts WHERE id=?"_s, {id});
    if (!found)
        return std::nullopt;
    return found->next() ? found->value(0).toString() : QString();
}
