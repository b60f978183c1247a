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

/// The geometry of a tray with this many rows: in the chosen corner of the screen's available area,
/// a margin away from its edges. On a screen that is too small, the left and bottom margins are
/// kept.
QRect trayFrame(const QRect &available, int rows, TrayPosition position);
