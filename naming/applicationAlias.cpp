// SPDX-License-Identifier: MIT
#include "naming/applicationAlias.h"

namespace
{

struct Alias {
    QStringView key;
    QStringView token;
};

// The last three never match, because their words are stop words.
constexpr Alias aliases[] = {
    {u"google-chrome", u"chrome"},
    {u"microsoft-edge", u"edge"},
    {u"visual-studio-code", u"vscode"},
    {u"code", u"vscode"},
    {u"system-settings", u"settings"},
    {u"system-preferences", u"settings"},
    {u"notification-center", u"notifications"},
    {u"user-notification-center", u"notifications"},
    {u"usernotificationcenter", u"notifications"},
};

} // namespace

QString applicationAlias(const QString &key)
{
    for (const Alias &alias : aliases) {
        if (key == alias.key)
            return alias.token.toString();
    }
    return {};
}
