#pragma once

#include "recognition/lines/TextLine.h"

#include <QImage>

/// A piece of a line as the engine likes it: dark on white, of full contrast, with white around it.
struct LinePicture {
    QImage ink;
    /// What it shows.
    QRect area;
};

/// The words of the line that stand in `area` of `picture` (what `opaquePicture` gives), each as a
/// whole, but nothing left of `leftmost`, which has been read. No ink where the area holds one
/// colour only, or a part of a texture.
LinePicture linePicture(const QImage &picture, const QRect &area, const TextLine &line,
                        int leftmost);
