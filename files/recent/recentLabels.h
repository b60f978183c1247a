// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QFont>
#include <QString>

class QLabel;

// The texts of the recent screenshots' window, all of them plain. Whoever asks for a label owns it.

void setRecentStyle(QLabel *label, const QFont &font, const QColor &color);

/// "Recent Screenshots".
QLabel *recentTitleLabel();

/// How many there are, at the right.
QLabel *recentCountLabel(const QString &count);

/// What stands in place of rows where there are none.
QLabel *recentEmptyLabel(const QString &text);
