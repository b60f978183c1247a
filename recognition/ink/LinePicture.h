// SPDX-License-Identifier: MIT
#pragma once

#include "recognition/lines/TextLine.h"

#include <QImage>

/// A piece of a line, drawn the way the engine reads it best: dark on white, in full contrast, with
/// a white margin.
struct LinePicture {
    QImage ink;
    /// The part of the picture that it shows.
    QRect area;
};

/// Draws the words of the line that are in `area` of `picture` (the result of `opaquePicture`).
/// Words are not cut off, but nothing left of `leftmost` is included, because it was already read.
/// `ink` is null when the area has only one colour, or is part of a texture.
LinePicture linePicture(const QImage &picture, const QRect &area, const TextLine &line,
                        int leftmost);
