// SPDX-License-Identifier: MIT
#pragma once

class QGridLayout;
class QWidget;

// The welcome window stands on three columns of one width. Widths are in points.
constexpr int columnCount = 3;
constexpr int columnWidth = 180;
constexpr int columnSpacing = 12;

/// A layout of these columns, without margins; the widget owns it.
QGridLayout *makeColumns(QWidget *owner);
