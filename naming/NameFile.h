// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

/// Builds file names from words. Any thread. Pure, except that fallbackName() reads the clock.
namespace NameFile
{

/// A name that needs no text: application, "screen", timestamp.
QString fallbackName(const QString &appName, const QUrl &fileURL);

/// The words joined by hyphens, or the fallback name if there are none.
QString nameFromWords(const QStringList &words, const QString &appName, const QUrl &fileURL);

/// A safe file name: folded, lower case, words of letters and digits joined by hyphens, at most 8
/// parts and 58 characters, with the extension in lower case. A missing base or extension is taken
/// from `fallback`.
QString sanitize(const QString &name, const QString &fallback);

} // namespace NameFile
