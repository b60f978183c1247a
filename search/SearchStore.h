// SPDX-License-Identifier: MIT
#pragma once

#include <QSqlQuery>
#include <QString>
#include <QVariantList>

#include <optional>

/// The database file of the search: it alone is opened and set aside here. Its owner alone may read
/// it. All calls block for the disk; one thread, which must be the same from `open` to `close`.
class SearchStore
{
public:
    /// `$XDG_DATA_HOME/velmora`, or what stands for it on this system.
    static QString defaultFolder();

    /// Touches nothing.
    explicit SearchStore(const QString &folder);
    ~SearchStore();
    Q_DISABLE_COPY_MOVE(SearchStore)

    /// Whether there is something to open.
    bool exists() const;

    /// Opens the file; makes it, empty, where there is none and it may be made. What has its name
    /// and is no database of ours is given another name first. False when that can't be.
    enum class Missing { Make, Leave };
    bool open(Missing missing);
    bool isOpen() const { return m_isOpen; }
    void close();

    /// Gives the file another name that nothing has.
    bool setAside();

    /// Deletes the file and all that was ever set aside or written beside it.
    bool remove();

    /// A query that has been run; nothing when it failed.
    std::optional<QSqlQuery> run(const QString &statement, const QVariantList &values = {});

    // A transaction's changes are kept whole or not at all.
    bool begin();
    bool commit();
    void rollBack();

    /// Whether what failed last failed because the file is damaged or none of ours.
    bool isBroken() const { return m_isBroken; }

private:
    bool prepareFile(Missing missing);
    bool prepareTables();
    bool isOurs();
    void note(const QSqlError &error);

    const QString m_folder;
    const QString m_path;
    const QString m_connection;
    bool m_isOpen = false;
    bool m_isBroken = false;
};
