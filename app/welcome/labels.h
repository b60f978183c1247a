// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QFont>
#include <QString>

class QLabel;
class QWidget;

// The texts of the welcome window, all of them plain text. The caller owns the label.

/// The heading of a section.
QLabel *sectionLabel(const QString &text);

/// A label above a control, which it names.
QLabel *label(const QString &text);

/// Text on one line.
QLabel *lineLabel(const QString &text, const QFont &font, const QColor &color);

/// Text on as many lines as it needs.
QLabel *wrappingLabel(const QString &text, const QFont &font, const QColor &color);

/// Text on one line, truncated in the middle where it doesn't fit.
QLabel *truncatedLabel(const QString &text, const QFont &font, const QColor &color);

/// A path in the fixed-width font, truncated in the middle, in full as tool tip.
QLabel *pathLabel(const QString &path);

void setTextColor(QWidget &widget, const QColor &color);
