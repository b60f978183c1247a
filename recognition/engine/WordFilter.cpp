#include "recognition/engine/WordFilter.h"

#include <algorithm>
#include <iterator>

namespace
{

/// Of the words read on some hundred drawn pages and real screenshots, about 9 of 10 right ones
/// were at least as sure as this, and of the wrong ones about 1 of 10; chosen by measuring names.
constexpr double leastConfidence = 0.83;

/// Short words are what icons and cut-off words come out as: three letters must be surer.
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
           letters.front().isLetter() && letters.compare(QLatin1String("www"), Qt::CaseInsensitive);
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
