// SPDX-License-Identifier: MIT
#include "naming/stopWords.h"

#include <QSet>

namespace
{

constexpr const char16_t *stopWords[] = {
    u"the",
    u"and",
    u"for",
    u"with",
    u"from",
    u"this",
    u"that",
    u"you",
    u"your",
    u"are",
    u"was",
    u"were",
    u"have",
    u"has",
    u"had",
    u"not",
    u"but",
    u"can",
    u"all",
    u"app",
    u"window",
    u"untitled",
    u"screenshot",
    u"screen",
    u"shot",
    u"image",
    u"file",
    u"edit",
    u"view",
    u"open",
    u"close",
    u"click",
    u"copy",
    u"paste",
    u"new",
    u"done",
    u"cancel",
    u"save",
    u"menu",
    u"back",
    u"next",
    u"search",
    u"home",
    u"mon",
    u"tue",
    u"wed",
    u"thu",
    u"fri",
    u"sat",
    u"sun",
    u"monday",
    u"tuesday",
    u"wednesday",
    u"thursday",
    u"friday",
    u"saturday",
    u"sunday",
    u"jan",
    u"feb",
    u"mar",
    u"apr",
    u"may",
    u"jun",
    u"jul",
    u"aug",
    u"sep",
    u"oct",
    u"nov",
    u"dec",
    u"january",
    u"february",
    u"march",
    u"april",
    u"june",
    u"july",
    u"august",
    u"september",
    u"october",
    u"november",
    u"december",
    u"notification",
    u"notifications",
    u"center",
    u"usernotificationcenter",
    u"systemuiserver",
};

} // namespace

bool isStopWord(const QString &token)
{
    static const QSet<QString> words = [] {
        QSet<QString> set;
        for (const char16_t *word : stopWords)
            set.insert(QString::fromUtf16(word));
        return set;
    }();
    return words.contains(token);
}
