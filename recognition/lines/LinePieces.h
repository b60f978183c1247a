// SPDX-License-Identifier: MIT
#pragma once

#include "recognition/lines/TextLine.h"

#include <vector>

/// The pieces in which a line is read, from left to right. A short line is one piece; a long one is
/// cut at its widest gaps into pieces of a few words. No word is cut, and the text after the last
/// word wanted costs nothing.
std::vector<QRect> piecesOf(const TextLine &line);
