// SPDX-License-Identifier: MIT
#include "search/ScreenshotTables.h"

#include "filesystem/FileUrls.h"
#include "search/searchTerms.h"

using namespace Qt::StringLiterals;

namespace
{

using Row = ScreenshotTables::Row;

/// Only the newest matches are ranked: ranking takes the most time, and nobody looks for the
/// thousandth hit.
constexpr int mostRanked = 1000;

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

Row rowFrom(const QSqlQuery &query)
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

} // namespace

/// Device numbers change when the computer restarts, so they are not compared.
bool ScreenshotTables::Row::isFile(const FileIdentity &other) const
{
    return entry.file.serial == other.serial && entry.file.made == other.made;
}

bool ScreenshotTables::Row::isThere() const
{
    const auto there = fileIdentity(entry.url.toLocalFile());
    return there && isFile(*there);
}

bool ScreenshotTables::Row::isOutOfReach() const
{
    return !FileUrls::exists(FileUrls::parentFolder(entry.url));
}

bool ScreenshotTables::prepareWords()
{
    auto version = m_store.run(u"PRAGMA user_version"_s);
    if (!version || !version->next())
        return false;
    if (version->value(0).toInt() == wordsVersion())
        return true;
    version.reset();
    const std::optional<QList<Row>> rows = all();
    bool isDone = rows && m_store.run(u"INSERT INTO words(words) VALUES('delete-all')"_s);
    for (const Row &row : rows.value_or(QList<Row>())) {
        const std::optional<QString> text = textOf(row.id);
        isDone = isDone && text &&
                 writeWords(row.id,
                            u"INSERT INTO words(rowid, name, application, text)"
                            " VALUES(?, ?, ?, ?)"_s,
                            row, *text);
    }
    return isDone && m_store.run(u"PRAGMA user_version=%1"_s.arg(wordsVersion()));
}

std::optional<QList<ScreenshotTables::Row>> ScreenshotTables::all()
{
    auto found = m_store.run(select("ORDER BY id"));
    if (!found)
        return std::nullopt;
    return rows(std::move(found));
}

QList<ScreenshotTables::Row> ScreenshotTables::rows(std::optional<QSqlQuery> found)
{
    QList<Row> rows;
    while (found && found->next())
        rows << rowFrom(*found);
    return rows;
}

std::optional<ScreenshotTables::Row> ScreenshotTables::rowOf(const FileIdentity &file)
{
    auto found = m_store.run(select("WHERE serial=? AND made=?"),
                             {qlonglong(file.serial), qlonglong(file.made)});
    return found && found->next() ? std::optional(rowFrom(*found)) : std::nullopt;
}

std::optional<ScreenshotTables::Row> ScreenshotTables::rowAt(const QUrl &url)
{
    auto found = m_store.run(select("WHERE path=?"), {url.toLocalFile()});
    return found && found->next() ? std::optional(rowFrom(*found)) : std::nullopt;
}

std::optional<ScreenshotTables::Row> ScreenshotTables::newestUnread()
{
    auto found = m_store.run(select("WHERE is_read=0 AND is_in_trash=0 ORDER BY modified DESC"));
    while (found && found->next()) {
        const Row row = rowFrom(*found);
        if (row.isThere())
            return row;
    }
    return std::nullopt;
}

QList<ScreenshotTables::Row> ScreenshotTables::matching(const QString &expression, Ranked ranked,
                                                        int limit)
{
    const QString statement =
        u"SELECT s.id, s.device, s.serial, s.made, s.size, s.modified, s.path, s.application,"
        " s.is_read, s.is_in_trash FROM (SELECT rowid, %1 AS score FROM words WHERE words MATCH ?"
        " ORDER BY rowid DESC LIMIT %2) AS hit JOIN screenshots AS s ON s.id=hit.rowid"
        " WHERE s.is_in_trash=0 ORDER BY hit.score, s.modified DESC LIMIT %3"_s
            .arg(ranked == Ranked::Yes ? u"bm25(words, 4.0, 2.0, 1.0)"_s : u"0"_s)
            .arg(mostRanked)
            .arg(limit);
    return rows(m_store.run(statement, {expression}));
}

std::optional<ScreenshotTables::Count> ScreenshotTables::count()
{
    auto counts =
        m_store.run(u"SELECT count(*), sum(is_read) FROM screenshots WHERE is_in_trash=0"_s);
    if (!counts || !counts->next())
        return std::nullopt;
    return Count{counts->value(1).toInt(), counts->value(0).toInt()};
}

bool ScreenshotTables::insert(const Entry &entry)
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

bool ScreenshotTables::update(const Row &row, const Entry &entry)
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

bool ScreenshotTables::setInTrash(const Row &row, bool isInTrash)
{
    return m_store.run(u"UPDATE screenshots SET is_in_trash=? WHERE id=?"_s, {isInTrash, row.id})
        .has_value();
}

bool ScreenshotTables::takeOut(const Row &row)
{
    const std::optional<QString> text = textOf(row.id);
    return text && replaceWords(row, *text, {}, {}) &&
           m_store.run(u"DELETE FROM texts WHERE id=?"_s, {row.id}) &&
           m_store.run(u"DELETE FROM screenshots WHERE id=?"_s, {row.id});
}

std::optional<QString> ScreenshotTables::textOf(qint64 id)
{
    auto found = m_store.run(u"SELECT text FROM texts WHERE id=?"_s, {id});
    if (!found)
        return std::nullopt;
    return found->next() ? found->value(0).toString() : QString();
}

bool ScreenshotTables::setText(const Row &row, const FileIdentity &file, const QString &text)
{
    const std::optional<QString> old = textOf(row.id);
    return old && replaceWords(row, *old, row, text) &&
           m_store.run(u"INSERT OR REPLACE INTO texts(id, text) VALUES(?, ?)"_s, {row.id, text}) &&
           m_store.run(u"UPDATE screenshots SET is_read=1, size=?, modified=? WHERE id=?"_s,
                       {file.size, file.modified, row.id});
}

bool ScreenshotTables::writeWords(qint64 id, const QString &statement, const Row &row,
                                  const QString &text)
{
    const QString name = FileUrls::baseName(FileUrls::lastPathComponent(row.entry.url));
    return m_store
        .run(statement, {id, SearchTerms::indexed(name),
                         SearchTerms::indexed(row.entry.application), SearchTerms::indexed(text)})
        .has_value();
}

/// The index has no copy of its texts, so it must be given the old text to remove it.
bool ScreenshotTables::replaceWords(const Row &old, const QString &oldText, const Row &row,
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
