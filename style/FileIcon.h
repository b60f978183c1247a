// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QUrl>

/// The desktop theme's icon for files with this name, or the program's own when the theme has none;
/// never null. The file itself is not read and need not exist. Main thread.
QIcon fileIcon(const QUrl &file);
