// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QPalette>

/// The eleven fixed colours of the program's own views, in sRGB. They do not change with the
/// desktop's theme. `coral` is a saturated blue, despite its name.
namespace VelmoraPalette
{

QColor coral();
QColor teal();
QColor amber();
QColor blue();
QColor window();
QColor tray();
QColor card();
QColor cardMuted();
QColor primaryText();
QColor secondaryText();
QColor tertiaryText();

/// The colour with its alpha component replaced (0 to 1).
QColor withAlpha(QColor color, double alpha);

/// The light widget palette, made of the colours above, for every window of the program.
QPalette lightPalette();

} // namespace VelmoraPalette
