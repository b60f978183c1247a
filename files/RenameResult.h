// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

/// The old and new location of a renamed file, both in the same folder.
struct RenameResult {
    QUrl oldURL;
    QUrl newURL;

    bool operator==(const RenameResult &) const = default;
};
