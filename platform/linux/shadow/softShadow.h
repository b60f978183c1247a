// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

/// How far a shadow extends beyond the edges of its rectangle, in points.
constexpr int shadowReach = 30;

/// The soft shadow of a rectangle with rounded corners in light from above: premultiplied black,
/// larger than the rectangle by the reach on each side. Nothing is drawn inside the rectangle
/// itself.
/// @param size   of the rectangle, in device pixels
/// @param radius of its corners, in points
/// @param scale  device pixels per point
QImage softShadow(QSize size, double radius, double scale);
