// SPDX-License-Identifier: MIT
#pragma once

#include "recognition/lines/TextLine.h"

#include <vector>

/// The lines in the order in which a person reads them: first the headings, which are much larger
/// than the text, from the top; then blocks of closely spaced lines (a paragraph, a card, a column
/// of a list), each block whole, from the top of the picture to its bottom and from left to right
/// where blocks begin at the same height.
std::vector<TextLine> inReadingOrder(std::vector<TextLine> lines);
