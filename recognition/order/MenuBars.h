// SPDX-License-Identifier: MIT
#pragma once

#include "recognition/lines/TextLine.h"

#include <vector>

/// The menu bars among the lines of a picture: rows of several single words, evenly spaced and
/// further apart than the words of a sentence, with no line of text close above or below.
std::vector<QRect> menuBarsIn(const std::vector<TextLine> &lines);
