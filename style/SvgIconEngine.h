// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

#include <optional>

/// An icon drawn from one of the program's own vector pictures, anew for each size and scale
/// factor. With a tint, only the picture's shape counts. On a disabled control it is grey.
///
/// @param name the picture below the room's resources, without ".svg"
/// @return a null icon when there is no such picture. Main thread.
QIcon svgIcon(const QString &name, const std::optional<QColor> &tint);
