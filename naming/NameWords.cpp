// SPDX-License-Identifier: MIT
#include "naming/NameWords.h"

#include "naming/Characters.h"
#include "naming/NameTokens.h"

#include <algorithm>

namespace
{

bool isNumeric(const QString &token)
{
    const QList<uint> codePoints = token.toUcs4();
    return std::all_of(codePoints.begin(), codePoints.end(), [](char32_t codePoint) {
        return QChar::isNumber(codePoint) || Characters::continuesCharacter(codePoint);
    });
}

} // namespace

NameWords::NameWords(const QString &appName)
    : m_applicationTokens(NameTokens::applicationTokens(appName))
{
}

bool NameWords::add(const QString &line)
{
    for (const QString &token : NameTokens::meaningfulTokens(NameTokens::tokens(line))) {
        if (m_textWords.size() == maximumTextWords)
            break;
        if (isUsable(token))
            m_textWords.append(token);
    }
    return m_textWords.size() < maximumTextWords;
}

QStringList NameWords::words() const
{
    return m_applicationTokens.mid(0, 1) + m_textWords;
}

bool NameWords::isUsable(const QString &token) const
{
    return !m_textWords.contains(token) && !m_applicationTokens.contains(token) &&
           !isNumeric(token) && Characters::count(token) <= maximumCharacters;
}
