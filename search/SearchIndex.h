// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/OpenFile.h"
#include "search/ScreenshotTables.h"
#include "search/SearchHit.h"
#include "search/SearchStore.h"

#include <QList>
#include <QStringList>
#include <QUrl>

#include <optional>

/// The known screenshots and their text, kept in a database. Everything in it can be read from the
/// screenshots again, so a damaged database, or anything else that has its name, is renamed and a
/// new one created. If nothing can be stored (a full disk, a locked or read-only file), calls
/// return false and change nothing.
///
/// All calls block for the disk. From the first call to `close`, all must come from one thread.
class SearchIndex
{
public:
    explicit SearchIndex(const QString &folder = SearchStore::defaultFolder());

    /// Whether there is a database.
    bool exists() const { return m_store.exists(); }

    /// Closes the database until the next call. Call it before a thread ends.
    void close() { m_store.close(); }

    using Entry = ScreenshotTables::Entry;

    /// Records these files under these names. New files, and files whose content has changed, wait
    /// to be read. A known file keeps its application if the entry has none.
    bool add(const QList<Entry> &entries);

    /// Like `add`, but `entries` are all files that `folder` contains. Files elsewhere are looked
    /// up, and those that are gone are removed, unless their whole folder is unreachable.
    bool setFolder(const QUrl &folder, const QList<Entry> &entries);

    /// The program has moved the file. Files in the trash are not found.
    enum class Place { Folder, Trash };
    bool moved(const QUrl &from, const QUrl &to, Place place);

    /// Another program has moved these files. Unknown ones are left alone. Creates no database.
    bool renamed(const QList<Entry> &entries);

    /// Whether the database had to be set aside since `setFolder`, which should then be called
    /// again.
    bool isBegunAnew() const { return m_isBegunAnew; }

    /// Stores the text of a file, without anything that looks like a secret. Stores nothing for a
    /// file that is unknown or is known to have changed since.
    bool setText(const FileIdentity &file, const QStringList &lines);

    /// The newest existing file that waits to be read.
    std::optional<Entry> nextUnread();

    using Progress = ScreenshotTables::Count;
    Progress progress();

    /// The screenshots whose name, application and text together contain all the words, each as the
    /// beginning of a word. The best come first; among equals, the newest. Files that are gone are
    /// left out. Does not create a database.
    QList<SearchHit> find(const QString &words, int limit);

    /// Deletes the database and everything that was ever set aside.
    bool forget();

private:
    using Row = ScreenshotTables::Row;

    template <typename Work>
    bool change(Work work);
    bool addOne(const Entry &entry);
    QList<SearchHit> hits(const QStringList &terms, int limit);

    SearchStore m_store;
    ScreenshotTables m_tables;
    bool m_isBegunAnew = false;
};
