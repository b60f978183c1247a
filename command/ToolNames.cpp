// SPDX-License-Identifier: MIT
#include "command/ToolNames.h"

#include "filesystem/FileUrls.h"

#include <QRegularExpression>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace
{

/// The words before the date, in lower case and composed form. What may separate them from the date
/// is part of the expression below, so "Screenshot_", "Screenshot - " and the like need no line of
/// their own.
constexpr QStringView openings[] = {
    u"screenshot",
    u"screenshot from",
    u"screenshot at",
    u"screen shot", // English
    u"bildschirmfoto",
    u"bildschirmfoto vom", // German
    u"capture d'écran",
    u"capture d'écran du", // French
    u"captura de pantalla",
    u"captura de pantalla de",
    u"captura desde", // Spanish, Catalan
    u"captura",
    u"schermata",
    u"schermata del", // Italian
    u"captura de ecrã",
    u"captura de ecrã de", // Portuguese
    u"captura de tela",
    u"captura de tela de", // of Brazil
    u"schermafdruk",
    u"schermafdruk van",
    u"schermafbeelding", // Dutch
    u"zrzut ekranu",
    u"zrzut ekranu z", // Polish
    u"snímek obrazovky",
    u"snímek obrazovky z", // Czech
    u"skärmbild",
    u"skärmbild från", // Swedish
    u"skärmavbild",
    u"skærmbillede",
    u"skærmbillede fra", // Danish
    u"skjermbilde",
    u"skjermbilde fra", // Norwegian
    u"kuvakaappaus",
    u"näyttökuva", // Finnish
    u"képernyőkép",
    u"képernyőkép ekkor", // Hungarian
    u"instantaneu de ecran",
    u"instantaneu de ecran din", // Romanian
    u"captură de ecran",
    u"captură de ecran din",
    u"ekran görüntüsü", // Turkish
    u"снимок экрана",
    u"снимок экрана от", // Russian
    u"скриншот",
    u"знімок екрана",
    u"знімок екрана з", // Ukrainian
    u"знімок екрану",
    u"στιγμιότυπο οθόνης",
    u"στιγμιότυπο οθόνης από", // Greek
    u"צילום מסך",
    u"צילום מסך מ־", // Hebrew
    u"스크린샷",     // Korean
    u"截图",
    u"屏幕截图",
    u"截屏", // simplified Chinese
    u"螢幕快照",
    u"螢幕截圖",
    u"截圖", // traditional Chinese
    u"cuplikan layar",
    u"cuplikan layar dari", // Indonesian
    u"スクリーンショット",  // Japanese
    u"screen",
    u"ksnip", // tools' own names
};

/// What follows an opening: a date, a time, additions by some tools, a counter.
const QRegularExpression &momentAfterOpening()
{
    static const QRegularExpression expression(
        uR"(^[\s_:-]*)"
        uR"((?:19|20)\d\d-?[01]\d-?[0-3]\d)"                               // date
        uR"((?:T|[\s_,.-]+|[\s,]+\p{L}{1,5}\s+))"                          // "_", " at "
        uR"(\d{1,2}[-.:_h\x{A789}]?[0-5]\d(?:[-.:_m\x{A789}]?[0-5]\ds?)?)" // time
        uR"((?:[\s\x{202F}]?[AP]M)?)"
        uR"((?:\s?-\s?\d{1,3}|_\d{1,3}|\s?\(\d{1,3}\))?$)"_s, // counter
        QRegularExpression::CaseInsensitiveOption);
    return expression;
}

/// Names that start with the date: "2026-11-21_07-00", "20261121_07h00m12s_grim",
/// "2026-11-21-070012_hyprshot", "2026-11-21T07:00:12,123456789+01:00".
const QRegularExpression &momentAlone()
{
    static const QRegularExpression expression(
        uR"(^(?:)"
        uR"((?:19|20)\d\d-[01]\d-[0-3]\d_[0-2]\d-[0-5]\d(?:-[0-5]\d)?(?:[_-]\d{1,3})?)"
        uR"(|(?:19|20)\d{6}_[0-2]\dh[0-5]\dm[0-5]\ds_grim)"
        uR"(|(?:19|20)\d\d-[01]\d-[0-3]\d-[0-2]\d[0-5]\d[0-5]\d_(?:hyprshot|grim))"
        uR"(|(?:19|20)\d\d-[01]\d-[0-3]\dT[0-2]\d:[0-5]\d:[0-5]\d(?:[,.]\d+)?)"
        uR"((?:Z|[+-]\d\d:?\d\d)?)"
        uR"()$)"_s);
    return expression;
}

} // namespace

bool ToolNames::isToolName(const QString &name)
{
    const QString base =
        FileUrls::baseName(name).normalized(QString::NormalizationForm_C).replace(u'’', u'\'');
    if (momentAlone().match(base).hasMatch())
        return true;
    return std::any_of(std::begin(openings), std::end(openings), [&base](QStringView opening) {
        if (!base.startsWith(opening, Qt::CaseInsensitive))
            return false;
        return momentAfterOpening().match(base.mid(opening.size())).hasMatch();
    });
}
