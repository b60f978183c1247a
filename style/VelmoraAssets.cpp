// SPDX-License-Identifier: MIT
#include "style/VelmoraAssets.h"

#include "style/SvgIconEngine.h"
#include "style/SymbolImages.h"
#include "style/VelmoraPalette.h"

using namespace Qt::StringLiterals;

QIcon VelmoraAssets::logoImage()
{
    const QIcon logo = svgIcon(u"VelmoraLogo"_s, std::nullopt);
    return logo.isNull() ? symbolIcon(u"camera.viewfinder"_s, VelmoraPalette::coral()) : logo;
}
