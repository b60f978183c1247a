// SPDX-License-Identifier: MIT
#include "search/matchingLine.h"

#include "naming/foldedText.h"

namespace
{

/// A term at the beginning of a word counts more than one within, though that may start a part such
/// as "Request" in "pullRequest".
enum Value { Absent, Within, AtBeginning };

Value valueOf(QStringView line, const QString &term)
{
    Value value = Absent;
    for (qsizetype at = line.indexOf(term); at >= 0; at = line.indexOf(term, at + 1)) {
        if (at == 0 || !line[at - 1].isLetterOrNumber())
            return AtBeginning;
        value = Within;
    }
    return value;
}

/// Long lines are read in pieces, so a short one continues with what follows.
QString withContext(const QStringList &lines, qsizetype number)
{
    constexpr qsizetype enough = 40;
    QString line = lines[number];
    while (line.size() < enough && ++number < lines.size() && !lines[number].isEmpty())
        line += u' ' + lines[number];
    return line;
}

} // namespace

QString matchingLine(const QString &text, const QStringList &terms)
{
    // Folding keeps line breaks.
    const QString folded = foldedText(text);
    qsizetype best = -1;
    int most = 0;
    qsizetype number = 0;
    for (const QStringView line : QStringView(folded).tokenize(u'\n')) {
        int value = 0;
        for (const QString &term : terms)
            value += valueOf(line, term);
        if (value > most) {
            most = value;
            best = number;
        }
        if (most == AtBeginning * terms.size())
            break;
        ++number;
    }
    return best < 0 ? QString() : withContext(text.split(u'\n'), best);
}
