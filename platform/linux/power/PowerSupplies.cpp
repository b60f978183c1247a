// SPDX-License-Identifier: MIT
#include "platform/linux/power/PowerSupplies.h"

#include <QDir>
#include <QFile>

using namespace Qt::StringLiterals;

namespace
{

QString valueOf(const QString &supply, const QString &name)
{
    QFile file(supply + u'/' + name);
    return file.open(QFile::ReadOnly) ? QString::fromLatin1(file.readAll()).trimmed() : QString();
}

} // namespace

std::optional<int> PowerSupplies::batteryInUse(const QString &folder)
{
    int count = 0;
    int sum = 0;
    bool isUsedUp = false;
    const QDir supplies(folder);
    for (const QString &name : supplies.entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        const QString supply = supplies.filePath(name);
        if (valueOf(supply, u"scope"_s) == u"Device")
            continue;
        if (valueOf(supply, u"type"_s) != u"Battery") {
            if (valueOf(supply, u"online"_s) == u"1")
                return std::nullopt;
            continue;
        }
        bool isKnown = false;
        const int capacity = valueOf(supply, u"capacity"_s).toInt(&isKnown);
        if (!isKnown)
            continue;
        ++count;
        sum += capacity;
        isUsedUp = isUsedUp || valueOf(supply, u"status"_s) == u"Discharging";
    }
    return isUsedUp ? std::optional(sum / count) : std::nullopt;
}
