// SPDX-License-Identifier: MIT
#include "recognition/engine/WordFilter.h"

#include <algorithm>
#include <iterator>

using namespace Qt::StringLiterals;

namespace
{

/// The least confidence of a word. On some hundred drawn pages and real screenshots, 9 of 10
/// correct words reached it and 1 of 10 wrong ones. Chosen by measuring the resulting names.
constexpr double leastConfidence = 0.83;

/// Icons and cut-off words are read as short words, so these need a higher confidence.
constexpr double leastConfidenceOfShort = 0.88;
constexpr qsizetype shortWord = 3;

QString lettersOf(const QString &text)
{
    QString letters;
    std::copy_if(text.begin(), text.end(), std::back_inserter(letters),
                 [](QChar character) { return character.isLetterOrNumber(); });
    return letters;
}

/// "eee", "OOO": a row of dots or of buttons.
bool isOneLetterRepeated(const QString &letters)
{
    return letters.size() >= shortWord && letters.count(letters.front()) == letters.size() &&
           letters.front().isLetter() && letters.compare("www"_L1, Qt::CaseInsensitive);
}

} // namespace

bool isRealWord(const ReadWord &word)
{
    const QString letters = lettersOf(word.text);
    if (letters.isEmpty() || isOneLetterRepeated(letters))
        return false;
    return word.confidence >=
           (letters.size() <= shortWord ? leastConfidenceOfShort : leastConfidence);
}
