// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>
#include <QUrl>

/// File names of words. Any thread; pure, but for the clock that fallbackName() reads.
namespace NameFile
{

/// A name that needs no text: application, "screen", time stamp.
QString fallbackName(const QString &appName, const QUrl &fileURL);

/// The name that the words make, joined by hyphens; without words the fallback name.
QString nameFromWords(const QStringList &words, const QString &appName, const QUrl &fileURL);

/// A safe file name: folded, lower case, words of letters and digits joined by hyphens, at most
/// 8 parts and 58 characters, and the extension in lower case. What `name` lacks comes from
/// `fallback`.
QString sanitize(const QString &name, const QString &fallback);

} // namespace NameFile
