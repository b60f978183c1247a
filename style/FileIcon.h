// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>
#include <QUrl>

/// The desktop theme's icon for files of this name, or the program's own where the theme has none;
/// never null. The file itself is not read and need not exist. Main thread.
QIcon fileIcon(const QUrl &file);
