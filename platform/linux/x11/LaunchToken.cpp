// SPDX-License-Identifier: MIT
#include "platform/linux/x11/LaunchToken.h"

#include <QFile>

using namespace Qt::StringLiterals;

namespace
{

constexpr char activationVariable[] = "XDG_ACTIVATION_TOKEN";
constexpr char startupVariable[] = "DESKTOP_STARTUP_ID";

/// Qt removes both variables from the environment at its start; those that the process was launched
/// with can still be read.
QString launchVariable(const QByteArray &name)
{
    QFile environment(u"/proc/self/environ"_s);
    if (!environment.open(QFile::ReadOnly))
        return {};
    const QByteArray beginning = name + '=';
    for (const QByteArray &variable : environment.readAll().split('\0')) {
        if (variable.startsWith(beginning))
            return QString::fromUtf8(variable.mid(beginning.size()));
    }
    return {};
}

QString activationKey()
{
    return u"activation-token"_s;
}

QString startupKey()
{
    return u"desktop-startup-id"_s;
}

} // namespace

LaunchToken LaunchToken::ofThisProcess()
{
    return {launchVariable(activationVariable), launchVariable(startupVariable)};
}

LaunchToken LaunchToken::fromPlatformData(const QVariantMap &data)
{
    return {data.value(activationKey()).toString(), data.value(startupKey()).toString()};
}

QVariantMap LaunchToken::platformData() const
{
    QVariantMap data;
    if (!activationToken.isEmpty())
        data.insert(activationKey(), activationToken);
    if (!startupId.isEmpty())
        data.insert(startupKey(), startupId);
    return data;
}

void LaunchToken::adopt() const
{
    if (!activationToken.isEmpty())
        qputenv(activationVariable, activationToken.toUtf8());
}
