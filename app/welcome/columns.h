// SPDX-License-Identifier: MIT
#pragma once

class QGridLayout;
class QWidget;

// The welcome window has three columns of equal width. Widths are in points.
constexpr int columnCount = 3;
constexpr int columnWidth = 180;
constexpr int columnSpacing = 12;

/// A layout with these columns and without margins; the widget owns it.
QGridLayout *makeColumns(QWidget *owner);
