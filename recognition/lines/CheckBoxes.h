// SPDX-License-Identifier: MIT
#pragma once

#include "recognition/ink/InkColours.h"
#include "recognition/lines/TextLine.h"

/// The area without an empty check box or radio button before the words: with it, the engine reads
/// "Oserver" for "server".
QRect withoutCheckBox(const QImage &picture, const QRect &area, const InkColours &colours,
                      const TextLine &line);
