// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

/// What a row of the recent screenshots' window asks for.
struct RecentScreenshotAction {
    enum class Kind { Copy, Reveal, Trash };

    Kind kind;
    QUrl url;

    bool operator==(const RecentScreenshotAction &) const = default;
};
