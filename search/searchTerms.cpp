// SPDX-License-Identifier: MIT
#include "search/searchTerms.h"

#include "naming/NameTokens.h"
#include "naming/foldedText.h"

using namespace Qt::StringLiterals;

namespace
{

/// Nobody types a longer query, but anything may be pasted.
constexpr qsizetype maximumTerms = 16;
constexpr qsizetype maximumQueryLength = 400;

bool isWrittenWithoutSpaces(char32_t codePoint)
{
    switch (QChar::script(codePoint)) {
    case QChar::Script_Han:
    case QChar::Script_Hiragana:
    case QChar::Script_Katakana:
    case QChar::Script_Thai:
    case QChar::Script_Lao:
    case QChar::Script_Khmer:
    case QChar::Script_Myanmar:
        return true;
    default:
        return false;
    }
}

/// Puts spaces around each character that is a word of its own.
QString spaced(const QString &token)
{
    QString text;
    bool isAlone = false;
    for (const char32_t codePoint : token.toUcs4()) {
        const bool wasAlone = std::exchange(isAlone, isWrittenWithoutSpaces(codePoint));
        if (!text.isEmpty() && (isAlone || wasAlone) && !QChar::isMark(codePoint))
            text += u' ';
        text += QChar::fromUcs4(codePoint);
    }
    return text;
}

} // namespace

QString SearchTerms::indexed(const QString &text)
{
    QStringList words;
    for (const QString &token : NameTokens::tokens(foldedText(text)))
        words << spaced(token);
    if (text.isUpper() || text.isLower())
        return words.join(u' ');
    // Adds the parts of words such as "pullRequest", which are one word above.
    for (const QString &run : text.split(u' ', Qt::SkipEmptyParts)) {
        const QString split = NameTokens::splitCamelCase(run);
        if (split.size() == run.size())
            continue;
        for (const QString &token : NameTokens::tokens(split))
            words << spaced(token);
    }
    return words.join(u' ');
}

QStringList SearchTerms::ofQuery(const QString &query)
{
    QStringList terms;
    for (const QString &token : NameTokens::tokens(foldedText(query.left(maximumQueryLength)))) {
        if (terms.size() < maximumTerms && !terms.contains(token))
            terms << token;
    }
    return terms;
}

QString SearchTerms::expression(const QStringList &terms)
{
    QStringList phrases;
    for (const QString &term : terms)
        phrases << u'"' + spaced(term) + u"\"*"_s;
    return phrases.join(u" AND "_s);
}
