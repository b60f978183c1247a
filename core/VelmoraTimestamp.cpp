// SPDX-License-Identifier: MIT
#include "core/VelmoraTimestamp.h"

#include <QLocale>

QString velmoraTimestamp(const QDateTime &moment)
{
    return QLocale().toString(moment.toLocalTime(), QStringLiteral("yyyyMMdd-HHmmss"));
}
