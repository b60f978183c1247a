// SPDX-License-Identifier: MIT
#include "recognition/engine/LocaleModels.h"

using namespace Qt::StringLiterals;

QStringList localeModels(const QLocale &locale)
{
    if (locale.language() == QLocale::English || locale.language() == QLocale::C)
        return {};
    if (locale.language() == QLocale::Chinese) {
        return {locale.script() == QLocale::TraditionalHanScript ? u"chi_tra"_s : u"chi_sim"_s};
    }
    const QString name = QLocale::languageToCode(locale.language(), QLocale::ISO639Part2T);
    return name.isEmpty() ? QStringList() : QStringList(name);
}
