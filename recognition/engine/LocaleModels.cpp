// SPDX-License-Identifier: MIT
#include "recognition/engine/LocaleModels.h"

QStringList localeModels(const QLocale &locale)
{
    if (locale.language() == QLocale::English || locale.language() == QLocale::C)
        return {};
    if (locale.language() == QLocale::Chinese) {
        return {locale.script() == QLocale::TraditionalHanScript ? QStringLiteral("chi_tra")
                                                                 : QStringLiteral("chi_sim")};
    }
    const QString name = QLocale::languageToCode(locale.language(), QLocale::ISO639Part2T);
    return name.isEmpty() ? QStringList() : QStringList(name);
}
