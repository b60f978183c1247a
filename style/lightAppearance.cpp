// SPDX-License-Identifier: MIT
#include "style/lightAppearance.h"

#include "style/SystemFont.h"
#include "style/VelmoraPalette.h"
#include "style/VelmoraStyle.h"

#include <QApplication>
#include <QToolTip>

void applyLightAppearance()
{
    QApplication::setStyle(new VelmoraStyle);
    // In the direction of the texts, which are all in English.
    QApplication::setLayoutDirection(Qt::LeftToRight);
    QApplication::setPalette(VelmoraPalette::lightPalette());
    QApplication::setFont(systemFont(13));
    QToolTip::setPalette(VelmoraPalette::lightPalette());
    QToolTip::setFont(systemFont(12));
}
