// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

/// Where a renamed file was and where it is: two places in one folder.
struct RenameResult {
    QUrl oldURL;
    QUrl newURL;

    bool operator==(const RenameResult &) const = default;
};
