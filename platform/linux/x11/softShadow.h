// SPDX-License-Identifier: MIT
#pragma once

#include <QImage>

/// How far a shadow reaches beyond the edges of what casts it, in points.
constexpr int shadowReach = 30;

/// The soft shadow of a rectangle with rounded corners, as light from above casts it: premultiplied
/// black that is larger than the rectangle by the reach on each side. Nothing is drawn where the
/// rectangle itself stands.
/// @param size   the rectangle's, in device pixels
/// @param radius its corners', in points
/// @param scale  device pixels a point
QImage softShadow(QSize size, double radius, double scale);
