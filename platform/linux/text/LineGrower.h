#pragma once

#include <QRect>

#include <vector>

/// Blobs that stand in one line, from left to right.
using BlobLine = std::vector<QRect>;

/// Puts blobs that stand side by side, at about the same height and of about the same size, into
/// lines. Blobs that are too low or too high for a letter are left out. A gap wider than one
/// between words ends a line.
std::vector<BlobLine> growLines(std::vector<QRect> blobs);
