// SPDX-License-Identifier: MIT
#include "style/SystemFont.h"

#include <QFontDatabase>

namespace
{

QFont sized(QFontDatabase::SystemFont kind, int size, QFont::Weight weight)
{
    QFont font = QFontDatabase::systemFont(kind);
    font.setPixelSize(size);
    font.setWeight(weight);
    return font;
}

} // namespace

QFont systemFont(int size, QFont::Weight weight)
{
    return sized(QFontDatabase::GeneralFont, size, weight);
}

QFont monospacedSystemFont(int size, QFont::Weight weight)
{
    return sized(QFontDatabase::FixedFont, size, weight);
}
