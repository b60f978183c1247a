// SPDX-License-Identifier: MIT
#pragma once

#include "filesystem/OpenFile.h"
#include "search/SearchStore.h"

#include <QList>
#include <QUrl>

#include <optional>

/// The known screenshots, and the words under which they are found, which it keeps in step. All
/// calls need an open store; those that change something belong to the caller's transaction. After
/// a failure the store says whether it is broken.
class ScreenshotTables
{
public:
    explicit ScreenshotTables(SearchStore &store) : m_store(store) {}

    struct Entry {
        QUrl url; ///< standardised
        FileIdentity file;
        QString application;
    };

    struct Row {
        qint64 id = 0;
        Entry entry;
        bool isRead = false;
        bool isInTrash = false;

        bool isFile(const FileIdentity &other) const;
        /// Whether this file is where it was. Blocks for the disk, like the next one.
        bool isThere() const;
        /// Whether the folder is gone, for example with its disk.
        bool isOutOfReach() const;
    };

    /// If an older version of the program made the words, they are made again from the texts.
    bool prepareWords();

    std::optional<QList<Row>> all();
    std::optional<Row> rowOf(const FileIdentity &file);
    std::optional<Row> rowAt(const QUrl &url);

    /// The newest existing file that waits to be read.
    std::optional<Row> newestUnread();

    /// The rows that match a full-text expression and are not in the trash. Ranked, the best come
    /// first; the others are the newest.
    enum class Ranked { No, Yes };
    QList<Row> matching(const QString &expression, Ranked ranked, int limit);

    struct Count {
        int read = 0;
        int all = 0;
    };
    std::optional<Count> count();

    bool insert(const Entry &entry);
    bool update(const Row &row, const Entry &entry);
    bool setInTrash(const Row &row, bool isInTrash);
    bool takeOut(const Row &row);

    /// Empty if the file has not been read; nothing if the database fails.
    std::optional<QString> textOf(qint64 id);

    /// The text of the content that `file` describes.
    bool setText(const Row &row, const FileIdentity &file, const QString &text);

private:
    QList<Row> rows(std::optional<QSqlQuery> found);
    bool writeWords(qint64 id, const QString &statement, const Row &row, const QString &text);
    bool replaceWords(const Row &old, const QString &oldText, const Row &row, const QString &text);

    SearchStore &m_store;
};
