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
    QApplication::setPalette(VelmoraPalette::lightPalette());
    QApplication::setFont(systemFont(13));
    QToolTip::setPalette(VelmoraPalette::lightPalette());
    QToolTip::setFont(systemFont(12));
}
