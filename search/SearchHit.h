// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

/// A screenshot that holds the words that somebody searched for.
struct SearchHit {
    QUrl url;
    /// The line of its text in which they stand; empty where only its name holds them.
    QString line;

    bool operator==(const SearchHit &) const = default;
};
