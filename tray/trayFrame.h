// SPDX-License-Identifier: MIT
#pragma once

#include "core/VelmoraSettings.h"

#include <QRect>

/// The tray's measures, in points.
namespace TrayMeasures
{

constexpr int width = 620;
constexpr int rowHeight = 72;
constexpr int rowSpacing = 6;
constexpr int inset = 8;
constexpr int screenMargin = 44;

} // namespace TrayMeasures

/// Where the tray with this many rows stands: in the chosen corner of the screen's `available`
/// part, a margin away from its edges. On a screen that is too small the left and the bottom
/// margin are kept.
QRect trayFrame(const QRect &available, int rows, TrayPosition position);
