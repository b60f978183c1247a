// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

/// Where a trashed file was, and where it is in the trash, standardised.
struct TrashResult {
    QUrl originalURL;
    QUrl trashedURL;

    bool operator==(const TrashResult &) const = default;
};
