#pragma once

#include <QImage>
#include <QRect>

/// A piece of a line as the engine likes it: dark on white, of full contrast, with white around it.
/// `area` lies in `picture` (what `opaquePicture` gives); `letterHeight` in its pixels. A null
/// image where the area holds one colour only, or a texture without a ground.
QImage linePicture(const QImage &picture, const QRect &area, int letterHeight);
