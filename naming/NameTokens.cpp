// SPDX-License-Identifier: MIT
#include "naming/NameTokens.h"

#include "naming/Characters.h"
#include "naming/applicationAlias.h"
#include "naming/foldedText.h"
#include "naming/stopWords.h"

namespace
{

constexpr qsizetype minimumTokenCharacters = 3;
constexpr qsizetype maximumApplicationTokens = 2;

} // namespace

QString NameTokens::splitCamelCase(const QString &text)
{
    QString split;
    split.reserve(text.size());
    bool afterLowerCase = false;
    for (const QStringView character : Characters::split(text)) {
        if (afterLowerCase && Characters::isUpperCase(character))
            split += QLatin1Char(' ');
        split += character;
        afterLowerCase = Characters::isLowerCase(character);
    }
    return split;
}

QStringList NameTokens::tokens(const QString &text)
{
    QStringList found;
    QString token;
    for (const char32_t codePoint : foldedText(splitCamelCase(text)).toUcs4()) {
        const bool continues = !token.isEmpty() && Characters::continuesCharacter(codePoint);
        if (continues || Characters::isLetterOrNumber(codePoint)) {
            token += QChar::fromUcs4(codePoint);
        } else if (!token.isEmpty()) {
            found.append(token);
            token.clear();
        }
    }
    if (!token.isEmpty())
        found.append(token);
    return found;
}

QStringList NameTokens::meaningfulTokens(const QStringList &tokens)
{
    QStringList kept;
    for (const QString &token : tokens) {
        if (Characters::count(token) >= minimumTokenCharacters && !isStopWord(token) &&
            !kept.contains(token))
            kept.append(token);
    }
    return kept;
}

QStringList NameTokens::applicationTokens(const QString &appName)
{
    const QStringList meaningful = meaningfulTokens(tokens(appName));
    const QString alias = applicationAlias(meaningful.join(u'-'));
    return alias.isNull() ? meaningful.mid(0, maximumApplicationTokens) : QStringList{alias};
}
