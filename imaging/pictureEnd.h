// SPDX-License-Identifier: MIT
#pragma once

/// Whether a picture file is there to its end, according to its structure: PNG up to its IEND
/// chunk, JPEG up to its end marker, HEIC and TIFF with all that their directories name. False for
/// other formats, for BigTIFF, and for what can't be read. Says nothing about the content in
/// between. Any thread; reads a few kilobytes.
/// @param descriptor the file, open for reading
bool reachesPictureEnd(int descriptor);
