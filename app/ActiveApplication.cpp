// SPDX-License-Identifier: MIT
#include "app/ActiveApplication.h"

#include "core/VelmoraIdentity.h"
#include "naming/foldedText.h"
#include "platform/FrontmostApplication.h"

#include <QStringList>

#include <algorithm>

namespace
{

const QStringList &systemNames()
{
    static const QStringList names = {
        QStringLiteral("notificationcenter"),
        QStringLiteral("usernotificationcenter"),
        QStringLiteral("systemuiserver"),
        QStringLiteral("controlcenter"),
        QStringLiteral("windowserver"),
        QStringLiteral("loginwindow"),
        QStringLiteral("finder"),
    };
    return names;
}

const QStringList &systemIdentifierPrefixes()
{
    static const QStringList prefixes = {
        QStringLiteral("com.apple.notificationcenterui"),
        QStringLiteral("com.apple.usernotifications"),
        QStringLiteral("com.apple.systemuiserver"),
        QStringLiteral("com.apple.controlcenter"),
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
    m_isTold = !application.localizedName.isEmpty();
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
