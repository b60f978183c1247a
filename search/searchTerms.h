// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/// How text is split into the words to search for. Case and accents are folded as in file names:
/// "Café" and "cafe" are one word. All functions are pure; any thread.
namespace SearchTerms
{

/// The words of a text as the index stores them, separated by spaces. "pullRequest" counts as
/// three: the whole word and its two parts. In scripts without spaces between words, each character
/// is a word.
QString indexed(const QString &text);

/// The words of a query, at most the first 16 in its first 400 characters.
QStringList ofQuery(const QString &query);

/// The words as a query of SQLite's full-text search: all must occur, each as the beginning of a
/// word. Empty if there are none.
QString expression(const QStringList &terms);

} // namespace SearchTerms
