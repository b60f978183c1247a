// SPDX-License-Identifier: MIT
#pragma once

#include "search/SearchHit.h"

#include <QList>
#include <QStringList>
#include <QUrl>

#include <chrono>
#include <functional>
#include <optional>

/// Finds screenshots in a folder by their names, without storing anything. The folder's listing is
/// cached while the user types. Not thread-safe; blocks for the disk.
class NameSearch
{
public:
    /// All screenshots in a folder, newest first; nothing if it cannot be read.
    using List = std::function<std::optional<QList<QUrl>>(const QUrl &folder)>;

    explicit NameSearch(List list) : m_list(std::move(list)) {}

    /// The screenshots whose names contain all the words, each as the beginning of a word; newest
    /// first.
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
