// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>

/// The program's own pictures.
namespace VelmoraAssets
{

/// The logo; without it the symbol "camera.viewfinder"; without that a null icon.
QIcon logoImage();

} // namespace VelmoraAssets
