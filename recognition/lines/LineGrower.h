// SPDX-License-Identifier: MIT
#pragma once

#include <QRect>

#include <vector>

/// The blobs of one line, from left to right.
using BlobLine = std::vector<QRect>;

/// Joins blobs into lines: those side by side, at about the same height and of about the same size.
/// A gap wider than a word gap ends a line, and so does a wall: the upright side of a box or of a
/// column that passes the line's whole height.
std::vector<BlobLine> growLines(const std::vector<QRect> &letters, const std::vector<QRect> &walls);
