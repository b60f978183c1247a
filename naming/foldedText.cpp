// SPDX-License-Identifier: MIT
#include "naming/foldedText.h"

#include "naming/Characters.h"

#include <algorithm>

namespace
{

constexpr char16_t firstBeyondAscii = 0x80;

bool marksAreAccents(char32_t base)
{
    switch (QChar::script(base)) {
    case QChar::Script_Latin:
    case QChar::Script_Greek:
    case QChar::Script_Cyrillic:
    case QChar::Script_Hebrew:
    case QChar::Script_Arabic:
        return true;
    default:
        return false;
    }
}

/// Expands folded letters that stand for several ("ß" to "ss", a ligature to its letters), which
/// QString::toCaseFolded() leaves alone. Such letters become longer in upper case.
QString spelledOut(const QString &text)
{
    QString spelled;
    spelled.reserve(text.size());
    for (const char32_t codePoint : text.toUcs4()) {
        const auto units = QChar::fromUcs4(codePoint);
        const QString letter = QStringView(units).toString();
        const QString upper = letter.toUpper();
        spelled += upper.size() > letter.size() ? upper.toLower() : letter;
    }
    return spelled;
}

QString withoutAccents(const QString &decomposed)
{
    QString kept;
    kept.reserve(decomposed.size());
    bool afterAccentedBase = false;
    for (const char32_t codePoint : decomposed.toUcs4()) {
        const bool isAccent = QChar::category(codePoint) == QChar::Mark_NonSpacing;
        if (!Characters::isMark(codePoint))
            afterAccentedBase = marksAreAccents(codePoint);
        if (!isAccent || !afterAccentedBase)
            kept += QChar::fromUcs4(codePoint);
    }
    return kept;
}

} // namespace

QString foldedText(const QString &text)
{
    const bool ascii = std::all_of(text.begin(), text.end(),
                                   [](QChar unit) { return unit.unicode() < firstBeyondAscii; });
    if (ascii)
        return text.toLower();
    const QString decomposed =
        spelledOut(text.toCaseFolded()).normalized(QString::NormalizationForm_D);
    return withoutAccents(decomposed).normalized(QString::NormalizationForm_C).toLower();
}
