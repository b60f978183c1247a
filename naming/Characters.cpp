// SPDX-License-Identifier: MIT
#include "naming/Characters.h"

#include <QTextBoundaryFinder>

#include <algorithm>

namespace
{

constexpr char16_t firstCombiningMark = 0x0300;
constexpr char32_t zeroWidthNonJoiner = 0x200C;
constexpr char32_t zeroWidthJoiner = 0x200D;

/// Whether each code unit is a character of its own. (Below the combining marks, the only character
/// of two units is a carriage return with a line feed.)
bool isSimple(QStringView text)
{
    return std::all_of(text.begin(), text.end(), [](QChar unit) {
        return unit.unicode() < firstCombiningMark && unit != QLatin1Char('\r');
    });
}

/// Calls `visit(end)` with the end of each character until it returns false.
template <typename Visit>
void forEachEnd(QStringView text, Visit visit)
{
    if (isSimple(text)) {
        for (qsizetype end = 1; end <= text.size() && visit(end);)
            ++end;
        return;
    }
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text.data(), text.size());
    for (qsizetype end = finder.toNextBoundary(); end > 0 && visit(end);)
        end = finder.toNextBoundary();
}

} // namespace

namespace Characters
{

QList<QStringView> split(QStringView text)
{
    QList<QStringView> characters;
    characters.reserve(text.size());
    qsizetype begin = 0;
    forEachEnd(text, [&](qsizetype end) {
        characters.append(text.sliced(begin, end - begin));
        begin = end;
        return true;
    });
    return characters;
}

qsizetype count(QStringView text)
{
    qsizetype characters = 0;
    forEachEnd(text, [&](qsizetype) {
        ++characters;
        return true;
    });
    return characters;
}

QString first(const QString &text, qsizetype maximum)
{
    qsizetype characters = 0;
    qsizetype length = 0;
    forEachEnd(text, [&](qsizetype end) {
        if (characters == maximum)
            return false;
        ++characters;
        length = end;
        return true;
    });
    return text.left(length);
}

bool isUpperCase(QStringView character)
{
    if (character.size() == 1 && character.front().isUpper())
        return true;
    const QString text = character.toString();
    return text.toUpper() == text && text.toLower() != text;
}

bool isLowerCase(QStringView character)
{
    if (character.size() == 1 && character.front().isLower())
        return true;
    const QString text = character.toString();
    return text.toLower() == text && text.toUpper() != text;
}

bool isLetterOrNumber(char32_t codePoint)
{
    return QChar::isLetterOrNumber(codePoint);
}

bool isMark(char32_t codePoint)
{
    return QChar::isMark(codePoint);
}

bool continuesCharacter(char32_t codePoint)
{
    return isMark(codePoint) || codePoint == zeroWidthNonJoiner || codePoint == zeroWidthJoiner;
}

} // namespace Characters
