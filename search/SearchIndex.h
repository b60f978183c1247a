// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/OpenFile.h"
#include "search/SearchHit.h"
#include "search/SearchStore.h"

#include <QList>
#include <QStringList>
#include <QUrl>

#include <optional>

/// Which screenshots there are and which text they hold, kept in a database. Everything in it can
/// be read from the screenshots again: a damaged database, or something else that has its name, is
/// set aside and a new one begun. Where nothing can be stored (a full disk, a locked or read-only
/// file) calls return false, and all stays as it was.
///
/// All calls block for the disk; one thread from the first call to `close`.
class SearchIndex
{
public:
    explicit SearchIndex(const QString &folder = SearchStore::defaultFolder());

    /// Whether there is a database.
    bool exists() const { return m_store.exists(); }

    /// Lets go of the database until the next call; for the end of a thread.
    void close() { m_store.close(); }

    struct Entry {
        QUrl url; ///< standardised
        FileIdentity file;
        QString application;
    };

    /// These files are there, under these names. What is not known yet waits to be read; so does
    /// what has another content than before. Known files keep their application where none is
    /// given.
    bool add(const QList<Entry> &entries);

    /// As `add`, and those are all that `folder` holds. Of others it is looked up whether they are
    /// still there: those that are not are forgotten, unless their whole folder is out of reach.
    bool setFolder(const QUrl &folder, const QList<Entry> &entries);

    /// The program has moved the file. What lies in the trash is not found.
    enum class Place { Folder, Trash };
    bool moved(const QUrl &from, const QUrl &to, Place place);

    /// Whether the database had to be set aside since `setFolder`: then it should be called again.
    bool isBegunAnew() const { return m_isBegunAnew; }

    /// The text of a file, without what looks like a secret. Nothing is stored for a file that is
    /// not known, or is known to have changed since.
    bool setText(const FileIdentity &file, const QStringList &lines);

    /// The newest file that waits to be read, of those that are there.
    std::optional<Entry> nextUnread();

    struct Progress {
        int read = 0;
        int all = 0;
    };
    Progress progress();

    /// The screenshots whose name, application and text together hold all the words, each as the
    /// beginning of a word: best first, of equal ones the newest first. Files that are gone are
    /// left out. Makes no database.
    QList<SearchHit> find(const QString &words, int limit);

    /// Deletes the database, and all that was ever set aside.
    bool forget();

private:
    struct Row;

    template <typename Work>
    bool change(Work work);
    bool prepareWords();
    std::optional<Row> rowOf(const FileIdentity &file);
    std::optional<Row> rowAt(const QUrl &url);
    bool insert(const Entry &entry);
    bool update(const Row &row, const Entry &entry);
    bool addOne(const Entry &entry);
    bool takeOut(const Row &row);
    bool writeWords(qint64 id, const QString &statement, const Row &row, const QString &text);
    bool replaceWords(const Row &old, const QString &oldText, const Row &row, const QString &text);
    std::optional<QString> textOf(qint64 id);
    QList<SearchHit> hits(const QStringList &terms, int limit);

    SearchStore m_store;
    bool m_isBegunAnew = false;
};
