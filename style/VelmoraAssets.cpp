// SPDX-License-Identifier: MIT
#include "style/VelmoraAssets.h"

#include "style/SvgIconEngine.h"
#include "style/SymbolImages.h"
#include "style/VelmoraPalette.h"

QIcon VelmoraAssets::logoImage()
{
    const QIcon logo = svgIcon(QStringLiteral("VelmoraLogo"), std::nullopt);
    return logo.isNull() ? symbolIcon(QStringLiteral("camera.viewfinder"), VelmoraPalette::coral())
                         : logo;
}
