// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

/// The words that a name may be made of. All functions are pure; any thread.
namespace NameTokens
{

/// A space before each capital that follows a small letter.
QString splitCamelCase(const QString &text);

/// The text's runs of letters and numbers, folded and in lower case.
QStringList tokens(const QString &text);

/// The tokens of three or more characters that are no stop words, each once.
QStringList meaningfulTokens(const QStringList &tokens);

/// The application's one alias, or up to two tokens of its name.
QStringList applicationTokens(const QString &appName);

} // namespace NameTokens
