// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>

/// The program's own pictures.
namespace VelmoraAssets
{

/// The logo; the symbol "camera.viewfinder" where it is missing; a null icon where that is missing
/// too.
QIcon logoImage();

} // namespace VelmoraAssets
