// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/// The line of the text that contains the most terms (the first of several) and, if it is short,
/// what follows it; empty if no line contains any. Any thread.
QString matchingLine(const QString &text, const QStringList &terms);
