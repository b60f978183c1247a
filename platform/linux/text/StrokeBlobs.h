#pragma once

#include <QImage>
#include <QRect>

#include <vector>

/// The smallest step of any colour channel, from one pixel to its right neighbour, that is the
/// edge of a stroke. Of 255; grey text of the least contrast that accessibility rules allow
/// (4.5 : 1) steps by 60 even where it is smoothed, the noise of a JPEG file by 20.
constexpr int minimumEdgeStep = 24;

/// More blobs than this are no text: a full page of the smallest letters on the largest screens
/// has a tenth.
constexpr std::size_t maximumBlobs = 200'000;

/// The boxes of what the edges of upright strokes hold together: letters, or neighbouring letters
/// that nearly touch, light on dark as well as dark on light. Horizontal rules leave no blobs,
/// upright ones very high ones. From top to bottom; rows after the `maximumBlobs`th are not looked
/// at. Takes what `opaquePicture` gives.
std::vector<QRect> findStrokeBlobs(const QImage &picture);
