// SPDX-License-Identifier: MIT
#pragma once

#include <QSqlQuery>
#include <QString>
#include <QVariantList>

#include <optional>

/// The database file of the search; only this class opens it and sets it aside. Only its owner can
/// read it. All calls block for the disk. From `open` to `close`, all must come from one thread.
class SearchStore
{
public:
    /// `$XDG_DATA_HOME/velmora`, or this system's equivalent.
    static QString defaultFolder();

    /// Accesses no file.
    explicit SearchStore(const QString &folder);
    ~SearchStore();
    Q_DISABLE_COPY_MOVE(SearchStore)

    /// Whether there is a file to open.
    bool exists() const;

    /// Opens the file. If there is none, creates an empty one, if `missing` allows it. Anything
    /// else with that name is renamed first. False on failure.
    enum class Missing { Make, Leave };
    bool open(Missing missing);
    bool isOpen() const { return m_isOpen; }
    void close();

    /// Renames the file to a free name.
    bool setAside();

    /// Deletes the file and everything that was ever set aside or written beside it.
    bool remove();

    /// Runs a statement; nothing if it failed.
    std::optional<QSqlQuery> run(const QString &statement, const QVariantList &values = {});

    // A transaction's changes are kept completely or not at all.
    bool begin();
    bool commit();
    void rollBack();

    /// Whether the last failure was because the file is damaged or not ours.
    bool isBroken() const { return m_isBroken; }

private:
    bool prepareFile(Missing missing);
    bool prepareTables();
    bool isOurs();
    bool hasOurTables();
    void note(const QSqlError &error);

    const QString m_folder;
    const QString m_path;
    const QString m_connection;
    bool m_isOpen = false;
    bool m_isBroken = false;
};
