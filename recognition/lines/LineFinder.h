// SPDX-License-Identifier: MIT
#pragma once

#include "recognition/lines/TextLine.h"

#include <QImage>
#include <QList>

#include <functional>
#include <vector>

/// The lines of text in a picture, in no order: letters from about 8 to 140 pixels high, light on
/// dark and dark on light. Nearly all text is found, and some of what is found is not text. Ends
/// early, with the lines so far, when `cancelled` returns true. `picture` is the result of
/// `opaquePicture`.
///
/// @param leftOut areas that are not searched; a line that runs into one ends there
std::vector<TextLine> findLines(const QImage &picture, const std::function<bool()> &cancelled,
                                const QList<QRect> &leftOut = {});
