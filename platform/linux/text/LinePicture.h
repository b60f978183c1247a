#pragma once

#include <QImage>
#include <QRect>

/// A piece of a line as the engine likes it: dark on white, of full contrast, with white around it.
/// `area` lies around its letters in `picture` (what `opaquePicture` gives); `letterHeight` is in
/// the picture's pixels. A null image where the area holds one colour only, or a part of a texture.
QImage linePicture(const QImage &picture, const QRect &area, int letterHeight);
