// SPDX-License-Identifier: MIT
#include "style/SymbolImages.h"

#include "style/SvgIconEngine.h"

QIcon symbolIcon(const QString &name, const QColor &color)
{
    return svgIcon(QStringLiteral("symbols/") + name, color);
}
