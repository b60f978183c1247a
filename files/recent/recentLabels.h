// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QFont>
#include <QString>

class QLabel;

// The labels of the recent screenshots' window, all of them plain text. The caller owns them.

void setRecentStyle(QLabel *label, const QFont &font, const QColor &color);

/// "Recent Screenshots".
QLabel *recentTitleLabel();

/// The number of screenshots, at the right.
QLabel *recentCountLabel(const QString &count);

/// Shown if there are no rows.
QLabel *recentEmptyLabel(const QString &text);
