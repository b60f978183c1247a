// SPDX-License-Identifier: MIT
#include "app/ActiveApplication.h"

#include "core/VelmoraIdentity.h"
#include "naming/foldedText.h"
#include "platform/FrontmostApplication.h"

#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

const QStringList &systemNames()
{
    static const QStringList names = {
        u"notificationcenter"_s,
        u"usernotificationcenter"_s,
        u"systemuiserver"_s,
        u"controlcenter"_s,
        u"windowserver"_s,
        u"loginwindow"_s,
        u"finder"_s,
    };
    return names;
}

const QStringList &systemIdentifierPrefixes()
{
    static const QStringList prefixes = {
        u"com.apple.notificationcenterui"_s,
        u"com.apple.usernotifications"_s,
        u"com.apple.systemuiserver"_s,
        u"com.apple.controlcenter"_s,
    };
    return prefixes;
}

QString normalized(const QString &name)
{
    QString folded = foldedText(name);
    folded.remove(QLatin1Char(' '));
    folded.remove(QLatin1Char('-'));
    return folded;
}

} // namespace

ActiveApplication::ActiveApplication(FrontmostApplication &frontmost, QObject *parent)
    : QObject(parent), m_frontmost(frontmost)
{
    refresh();
}

void ActiveApplication::refresh()
{
    if (const std::optional<Application> application = m_frontmost.current())
        consider(*application);
}

void ActiveApplication::observe()
{
    connect(&m_frontmost, &FrontmostApplication::activated, this, &ActiveApplication::consider);
}

void ActiveApplication::consider(const Application &application)
{
    if (!isCustomerApp(application.localizedName, application.bundleIdentifier))
        return;
    m_lastActiveAppName = application.localizedName;
    m_isKnown = !application.localizedName.isEmpty();
}

bool ActiveApplication::isCustomerApp(const QString &name,
                                      const std::optional<QString> &bundleIdentifier)
{
    if (bundleIdentifier == velmoraBundleIdentifier())
        return false;
    if (systemNames().contains(normalized(name)))
        return false;
    const QStringList &prefixes = systemIdentifierPrefixes();
    return !bundleIdentifier ||
           std::none_of(prefixes.begin(), prefixes.end(), [&](const QString &prefix) {
               return bundleIdentifier->startsWith(prefix);
           });
}
