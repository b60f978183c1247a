// SPDX-License-Identifier: MIT
#include "core/VelmoraTimestamp.h"

#include <QLocale>

using namespace Qt::StringLiterals;

QString velmoraTimestamp(const QDateTime &moment)
{
    return QLocale().toString(moment.toLocalTime(), u"yyyyMMdd-HHmmss"_s);
}
