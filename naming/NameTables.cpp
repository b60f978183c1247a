#include "naming/NameTables.h"

#include <QSet>

namespace
{

constexpr const char *stopWords[] = {
    "the",
    "and",
    "for",
    "with",
    "from",
    "this",
    "that",
    "you",
    "your",
    "are",
    "was",
    "were",
    "have",
    "has",
    "had",
    "not",
    "but",
    "can",
    "all",
    "app",
    "window",
    "untitled",
    "screenshot",
    "screen",
    "shot",
    "image",
    "file",
    "edit",
    "view",
    "open",
    "close",
    "click",
    "copy",
    "paste",
    "new",
    "done",
    "cancel",
    "save",
    "menu",
    "back",
    "next",
    "search",
    "home",
    "mon",
    "tue",
    "wed",
    "thu",
    "fri",
    "sat",
    "sun",
    "monday",
    "tuesday",
    "wednesday",
    "thursday",
    "friday",
    "saturday",
    "sunday",
    "jan",
    "feb",
    "mar",
    "apr",
    "may",
    "jun",
    "jul",
    "aug",
    "sep",
    "oct",
    "nov",
    "dec",
    "january",
    "february",
    "march",
    "april",
    "june",
    "july",
    "august",
    "september",
    "october",
    "november",
    "december",
    "notification",
    "notifications",
    "center",
    "usernotificationcenter",
    "systemuiserver",
};

struct Alias {
    const char *key;
    const char *token;
};

// The last three never match, for their words are stop words.
constexpr Alias aliases[] = {
    {"google-chrome", "chrome"},
    {"microsoft-edge", "edge"},
    {"visual-studio-code", "vscode"},
    {"code", "vscode"},
    {"system-settings", "settings"},
    {"system-preferences", "settings"},
    {"notification-center", "notifications"},
    {"user-notification-center", "notifications"},
    {"usernotificationcenter", "notifications"},
};

} // namespace

namespace NameTables
{

bool isStopWord(const QString &token)
{
    static const QSet<QString> words = [] {
        QSet<QString> set;
        for (const char *word : stopWords)
            set.insert(QLatin1String(word));
        return set;
    }();
    return words.contains(token);
}

QString applicationAlias(const QString &key)
{
    for (const Alias &alias : aliases) {
        if (key == QLatin1String(alias.key))
            return QLatin1String(alias.token);
    }
    return {};
}

} // namespace NameTables
