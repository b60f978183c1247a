// SPDX-License-Identifier: MIT
#include "style/SymbolImages.h"

#include "style/SvgIconEngine.h"

using namespace Qt::StringLiterals;

QIcon symbolIcon(const QString &name, const QColor &color)
{
    return svgIcon(u"symbols/"_s + name, color);
}
