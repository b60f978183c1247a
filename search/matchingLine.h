// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/// The line of the text that holds most of the terms, the first of several, and if it is short what
/// follows it; empty where none holds any. Any thread.
QString matchingLine(const QString &text, const QStringList &terms);
