#pragma once

#include "recognition/lines/TextLine.h"

#include <vector>

/// The parts of a line that are read one by one, left to right, each as high as the line: a short
/// line whole, a long one in pieces of some words, cut at the widest gaps, so that no word is cut
/// and what follows the last word wanted costs nothing.
std::vector<QRect> piecesOf(const TextLine &line);
