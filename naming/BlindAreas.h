// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QRect>
#include <QSize>

#include <functional>

/// Returns the areas of a picture of this size, in pixels, that must not be read; may be empty.
/// Called on any thread once the picture's size is known.
using BlindAreas = std::function<QList<QRect>(QSize picture)>;
