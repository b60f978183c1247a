// SPDX-License-Identifier: MIT
#include "tray/rowStyle.h"

#include "style/VelmoraPalette.h"

using namespace Qt::StringLiterals;

RowStyle rowStyle(bool isNewest)
{
    using namespace VelmoraPalette;
    const QColor border = withAlpha(coral(), 0.34);
    if (isNewest) {
        return {
            .freshness = u"NEW"_s,
            .freshnessText = coral(),
            .freshnessBackground = withAlpha(coral(), 0.16),
            .accent = withAlpha(coral(), 0.95),
            .background = card(),
            .borderWidth = 1,
            .border = border,
            .alpha = 1,
        };
    }
    return {
        .freshness = u"EARLIER"_s,
        .freshnessText = lightPalette().color(QPalette::PlaceholderText),
        .freshnessBackground = withAlpha(blue(), 0.08),
        .accent = withAlpha(blue(), 0.28),
        .background = cardMuted(),
        .borderWidth = 0,
        .border = border,
        .alpha = 0.72,
    };
}
