#pragma once

#include <QImage>

/// The picture in a format whose pixels can be compared channel by channel: 32 bits, red, green and
/// blue, without transparency (what is transparent is black).
QImage opaquePicture(const QImage &image);

/// Half as wide and half as high; each pixel is the mean of four. An odd last row or column is
/// left out. Takes what `opaquePicture` gives.
QImage halvedPicture(const QImage &picture);
