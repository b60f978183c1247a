// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QUrl>

#include <optional>

/// Why the folder can't be watched, as a sentence for the user; nothing when it can be.
std::optional<QString> folderRefusal(const QUrl &folder);
