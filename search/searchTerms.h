// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/// How text becomes the words that are searched for. Case and accents are folded as in file names:
/// "Café" and "cafe" are one word. All functions are pure; any thread.
namespace SearchTerms
{

/// What the index holds of a text: its words, separated by spaces. "pullRequest" counts as three:
/// the whole, and its parts. Scripts without spaces between words give one word a character.
QString indexed(const QString &text);

/// The words of what a user has typed.
QStringList ofQuery(const QString &query);

/// The words as SQLite's full-text search asks for them: all of them, each as the beginning of a
/// word. Empty when there are none.
QString expression(const QStringList &terms);

} // namespace SearchTerms
