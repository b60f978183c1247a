// SPDX-License-Identifier: MIT
#pragma once

#include "search/SearchHit.h"

#include <QList>
#include <QStringList>
#include <QUrl>

#include <chrono>
#include <functional>
#include <optional>

/// Finds screenshots of a folder by their names, without storing anything. The folder's listing is
/// kept for as long as somebody types. One thread; blocks for the disk.
class NameSearch
{
public:
    /// All screenshots of a folder, newest first; nothing when it can't be read.
    using List = std::function<std::optional<QList<QUrl>>(const QUrl &folder)>;

    explicit NameSearch(List list) : m_list(std::move(list)) {}

    /// Those whose names hold all the words, each as the beginning of a word; newest first.
    QList<SearchHit> find(const QUrl &folder, const QString &words, int limit);

private:
    struct Name {
        QUrl url;
        QString indexed;
    };

    void refresh(const QUrl &folder);

    List m_list;
    QUrl m_folder;
    std::chrono::steady_clock::time_point m_listedAt;
    QList<Name> m_names;
};
