// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

/// A screenshot that contains the words of a search.
struct SearchHit {
    QUrl url;
    /// The line of its text that contains them; empty if only its name does.
    QString line;

    bool operator==(const SearchHit &) const = default;
};
