// SPDX-License-Identifier: MIT
#pragma once

#include <QFont>

/// The interface font. Sizes are in points of the layout; a point is one device-independent pixel
/// on every platform.
QFont systemFont(int size, QFont::Weight weight = QFont::Normal);

/// The interface's fixed-width font.
QFont monospacedSystemFont(int size, QFont::Weight weight = QFont::Normal);
