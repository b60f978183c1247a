// SPDX-License-Identifier: MIT
#include "platform/linux/screenshot-tools/GSettings.h"

#include <QStandardPaths>

using namespace Qt::StringLiterals;

namespace
{

/// The command takes values in text form: a string is in quotes.
QString quoted(QString value)
{
    value.replace(u'\\', u"\\\\"_s).replace(u'\'', u"\\'"_s);
    return u'\'' + value + u'\'';
}

} // namespace

namespace GSettings
{

QList<SystemCommand> storeString(const FollowedSetting::Name &name, const QString &value)
{
    const QString executable = QStandardPaths::findExecutable(u"gsettings"_s);
    if (executable.isEmpty())
        return {};
    return {{executable,
             {u"set"_s, QString::fromLatin1(name.schema), QString::fromLatin1(name.key),
              quoted(value)}}};
}

} // namespace GSettings
