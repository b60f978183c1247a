// SPDX-License-Identifier: MIT
#pragma once

#include "recognition/lines/LineGrower.h"
#include "recognition/lines/TextLine.h"

#include <optional>

/// The rows of a line's letters.
struct LineRows {
    /// The base row of most letters.
    int base = 0;
    /// The height of most letters above the base.
    int letterHeight = 0;
};

/// Wide blobs count most, because they are words more often than icons. Needs at least one blob.
LineRows rowsOf(const BlobLine &blobs);

/// The blobs that extend further beyond the line than ascenders and descenders do: icons, and the
/// sides of boxes.
std::vector<QRect> strangersIn(const BlobLine &blobs);

/// A stranger, or a blob higher than all letters, that is as narrow as a side of a box.
bool isWall(const QRect &blob);

/// The line of text that the blobs form; nothing when it is too narrow for a word or its blobs have
/// no common base.
std::optional<TextLine> lineOf(const BlobLine &blobs);
