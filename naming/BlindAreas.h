// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QRect>
#include <QSize>

#include <functional>

/// The areas of a picture with so many pixels in which nothing is to be read. Asked once the
/// picture's size is known, from any thread; may be empty.
using BlindAreas = std::function<QList<QRect>(QSize picture)>;
