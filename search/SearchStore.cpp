// SPDX-License-Identifier: MIT
#include "search/SearchStore.h"

#include "filesystem/FileUrls.h"
#include "filesystem/moveFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QSqlDatabase>
#include <QSqlError>
#include <QStandardPaths>
#include <QUuid>

using namespace Qt::StringLiterals;

namespace
{

constexpr QFile::Permissions ownersFile = QFile::ReadOwner | QFile::WriteOwner;
constexpr QFile::Permissions ownersFolder = ownersFile | QFile::ExeOwner;

/// Marks the database as ours; an arbitrary number that no other program uses.
constexpr int applicationId = 0x56454C4D;

/// A process holds the lock for milliseconds, unless it is stopped.
constexpr int lockMilliseconds = 1000;

QString fileName()
{
    return u"search.db"_s;
}

/// SQLite's error codes.
enum Failure { Corrupt = 11, NotADatabase = 26 };

/// The texts have a table of their own, so that reading through the screenshots reads little.
/// Searches use a full-text index without a copy of the texts. Its words are already folded, so its
/// tokenizer only has to split them.
QStringList tables()
{
    return {
        u"CREATE TABLE screenshots(id INTEGER PRIMARY KEY, device INTEGER, serial INTEGER,"
        " made INTEGER, size INTEGER, modified INTEGER, path TEXT, application TEXT,"
        " is_read INTEGER DEFAULT 0, is_in_trash INTEGER DEFAULT 0)"_s,
        u"CREATE INDEX serials ON screenshots(serial)"_s,
        u"CREATE TABLE texts(id INTEGER PRIMARY KEY, text TEXT)"_s,
        u"CREATE VIRTUAL TABLE words USING fts5(name, application, text, content='',"
        " tokenize='ascii', prefix='1')"_s,
    };
}

} // namespace

QString SearchStore::defaultFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/velmora"_s;
}

SearchStore::SearchStore(const QString &folder)
    : m_folder(folder)
    , m_path(folder + u'/' + fileName())
    , m_connection(u"velmora-search-"_s + QUuid::createUuid().toString())
{
}

SearchStore::~SearchStore()
{
    close();
}

bool SearchStore::exists() const
{
    return QFileInfo::exists(m_path);
}

bool SearchStore::open(Missing missing)
{
    constexpr int mostTries = 2;
    for (int tries = 0; tries < mostTries; ++tries) {
        m_isBroken = false;
        if (!prepareFile(missing))
            return false;
        QSqlDatabase database = QSqlDatabase::addDatabase(u"QSQLITE"_s, m_connection);
        database.setDatabaseName(m_path);
        database.setConnectOptions(u"QSQLITE_BUSY_TIMEOUT=%1"_s.arg(lockMilliseconds));
        m_isOpen = database.open();
        if (m_isOpen && prepareTables())
            return true;
        if (!m_isOpen)
            note(database.lastError());
        database = {};
        close();
        if (!m_isBroken || !setAside())
            return false;
    }
    return false;
}

bool SearchStore::prepareFile(Missing missing)
{
    const QFileInfo file(m_path);
    if ((file.exists() || file.isSymLink()) && (file.isSymLink() || !file.isFile()) && !setAside())
        return false;
    if (!exists()) {
        if (missing == Missing::Leave)
            return false;
        // Its parents are not ours, so they get ordinary permissions.
        QDir().mkpath(QFileInfo(m_folder).path());
        QDir().mkdir(m_folder, ownersFolder);
        QFile made(m_path);
        if (!made.open(QFile::WriteOnly | QFile::NewOnly, ownersFile))
            return false;
    }
    QFile::setPermissions(m_folder, ownersFolder);
    QFile::setPermissions(m_path, ownersFile);
    return true;
}

bool SearchStore::prepareTables()
{
    const auto isEmpty = [this] {
        auto count = run(u"SELECT count(*) FROM sqlite_master"_s);
        return count && count->next() && count->value(0).toInt() == 0;
    };
    // Then readers wait neither for a writer nor for the disk.
    run(u"PRAGMA journal_mode=WAL"_s);
    run(u"PRAGMA synchronous=NORMAL"_s);
    run(u"PRAGMA secure_delete=ON"_s);
    if (!isEmpty())
        return !m_isBroken && isOurs() && hasOurTables();
    if (m_isBroken || !begin())
        return false;
    // Another process may have created the tables first.
    bool isDone = true;
    if (isEmpty()) {
        for (const QString &statement : tables())
            isDone = isDone && run(statement);
        isDone = isDone && run(u"PRAGMA application_id=%1"_s.arg(applicationId));
    }
    if (isDone && commit())
        return true;
    rollBack();
    return false;
}

bool SearchStore::isOurs()
{
    auto id = run(u"PRAGMA application_id"_s);
    if (!id || !id->next())
        return false;
    m_isBroken = id->value(0).toInt() != applicationId;
    return !m_isBroken;
}

/// Another version of the program may have created it, with other tables.
bool SearchStore::hasOurTables()
{
    for (const QString &statement : tables()) {
        auto table = run(u"SELECT 1 FROM sqlite_master WHERE sql=?"_s, {statement});
        if (!table)
            return false;
        m_isBroken = !table->next();
        if (m_isBroken)
            return false;
    }
    return true;
}

void SearchStore::close()
{
    m_isOpen = false;
    if (!QSqlDatabase::contains(m_connection))
        return;
    QSqlDatabase::database(m_connection, false).close();
    QSqlDatabase::removeDatabase(m_connection);
}

bool SearchStore::setAside()
{
    close();
    constexpr int mostTries = 1000;
    for (int number = 1; number <= mostTries; ++number) {
        const QString aside = m_path + u".aside-%1"_s.arg(number);
        const auto error = moveFile(FileUrls::fromPath(m_path), FileUrls::fromPath(aside));
        if (error == std::errc::file_exists)
            continue;
        // A journal is useless without its database, and would damage the next one.
        for (const QString &suffix : {u"-wal"_s, u"-shm"_s, u"-journal"_s})
            QFile::remove(m_path + suffix);
        return !error;
    }
    return false;
}

bool SearchStore::remove()
{
    close();
    bool isGone = true;
    QDir folder(m_folder);
    constexpr QDir::Filters all = QDir::Files | QDir::Hidden | QDir::System;
    for (const QString &name : folder.entryList({fileName() + u'*'}, all))
        isGone = folder.remove(name) && isGone;
    // Succeeds only if it is empty.
    QDir().rmdir(m_folder);
    return isGone;
}

std::optional<QSqlQuery> SearchStore::run(const QString &statement, const QVariantList &values)
{
    QSqlQuery query(QSqlDatabase::database(m_connection, false));
    query.setForwardOnly(true);
    bool isDone = query.prepare(statement);
    if (isDone) {
        for (const QVariant &value : values)
            query.addBindValue(value);
        isDone = query.exec();
    }
    if (isDone)
        return query;
    note(query.lastError());
    return std::nullopt;
}

bool SearchStore::begin()
{
    return run(u"BEGIN IMMEDIATE"_s).has_value();
}

bool SearchStore::commit()
{
    return run(u"COMMIT"_s).has_value();
}

void SearchStore::rollBack()
{
    const bool wasBroken = m_isBroken;
    run(u"ROLLBACK"_s);
    m_isBroken = wasBroken;
}

void SearchStore::note(const QSqlError &error)
{
    constexpr int extension = 0xff;
    const int failure = error.nativeErrorCode().toInt() & extension;
    m_isBroken = m_isBroken || failure == Corrupt || failure == NotADatabase;
}
