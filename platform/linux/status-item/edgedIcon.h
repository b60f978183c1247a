// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>

/// The icon with a light edge around its dark shapes, so that it shows on a dark bar as well as on
/// a light one. Main thread.
QIcon edgedIcon(const QIcon &icon);
