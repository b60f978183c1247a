// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
#include <QString>
#include <QStringView>

/// Text as a reader sees it: a character is a letter with all its marks (a grapheme cluster), and
/// what kind it is follows from the Unicode properties. All functions are pure.
namespace Characters
{

QList<QStringView> split(QStringView text);

qsizetype count(QStringView text);

/// The longest beginning of at most `maximum` characters.
QString first(const QString &text, qsizetype maximum);

bool isUpperCase(QStringView character);
bool isLowerCase(QStringView character);

// Of code points:

bool isLetterOrNumber(char32_t codePoint);
bool isMark(char32_t codePoint);

/// Whether the code point belongs to the character before it, whatever that is.
bool continuesCharacter(char32_t codePoint);

} // namespace Characters
