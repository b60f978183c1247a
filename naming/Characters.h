// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringView>

/// Text as a reader sees it: a character is a letter with all its marks (a grapheme cluster),
/// classified by its Unicode properties. All functions are pure.
namespace Characters
{

QList<QStringView> split(QStringView text);

qsizetype count(QStringView text);

/// The first `maximum` characters, or the whole text if it is shorter.
QString first(const QString &text, qsizetype maximum);

bool isUpperCase(QStringView character);
bool isLowerCase(QStringView character);

// Of code points:

bool isLetterOrNumber(char32_t codePoint);
bool isMark(char32_t codePoint);

/// Whether the code point always belongs to the character before it.
bool continuesCharacter(char32_t codePoint);

} // namespace Characters
