// SPDX-License-Identifier: MIT
#pragma once

#include <QUrl>

/// A request from a row of the recent screenshots' window.
struct RecentScreenshotAction {
    enum class Kind { Copy, Reveal, Trash };

    Kind kind;
    QUrl url;

    bool operator==(const RecentScreenshotAction &) const = default;
};
