#pragma once

#include "recognition/lines/TextLine.h"

#include <QImage>

#include <functional>
#include <vector>

/// The lines of text in a picture, in no order: letters from about 8 to 140 pixels high, light on
/// dark and dark on light. Some of what it gives is no text; most of what is text is there. Ends
/// early, with what it has, when `cancelled`. Takes what `opaquePicture` gives.
std::vector<TextLine> findLines(const QImage &picture, const std::function<bool()> &cancelled);
