// SPDX-License-Identifier: MIT
#include "style/breakableText.h"

namespace
{

constexpr QChar zeroWidthSpace(0x200b);
constexpr QStringView partEnds = u"/\\-_.";
constexpr int longestPart = 24;

} // namespace

QString breakableText(const QString &text)
{
    QString result;
    int partLength = 0;
    for (const QChar character : text) {
        result += character;
        ++partLength;
        const bool ends = partEnds.contains(character) || partLength >= longestPart;
        if (character.isSpace())
            partLength = 0;
        else if (ends && !character.isHighSurrogate()) {
            result += zeroWidthSpace;
            partLength = 0;
        }
    }
    return result;
}
