// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/// The words that a name can be made of. All functions are pure; any thread.
namespace NameTokens
{

/// Inserts a space before each capital that follows a lower-case letter.
QString splitCamelCase(const QString &text);

/// The runs of letters and numbers in the text, folded and in lower case.
QStringList tokens(const QString &text);

/// The tokens of at least three characters that are not stop words, without duplicates.
QStringList meaningfulTokens(const QStringList &tokens);

/// The application's alias, or else up to two tokens of its name.
QStringList applicationTokens(const QString &appName);

} // namespace NameTokens
