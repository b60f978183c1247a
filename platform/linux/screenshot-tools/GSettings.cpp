// SPDX-License-Identifier: MIT
#include "platform/linux/screenshot-tools/GSettings.h"

#include <QStandardPaths>

namespace
{

/// The command takes values in text form: a string is in quotes.
QString quoted(QString value)
{
    value.replace(u'\\', QStringLiteral("\\\\")).replace(u'\'', QStringLiteral("\\'"));
    return u'\'' + value + u'\'';
}

} // namespace

namespace GSettings
{

QList<SystemCommand> storeString(const FollowedSetting::Name &name, const QString &value)
{
    const QString executable = QStandardPaths::findExecutable(QStringLiteral("gsettings"));
    if (executable.isEmpty())
        return {};
    return {{executable,
             {QStringLiteral("set"), QString::fromLatin1(name.schema),
              QString::fromLatin1(name.key), quoted(value)}}};
}

} // namespace GSettings
