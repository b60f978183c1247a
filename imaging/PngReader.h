// SPDX-License-Identifier: MIT
#pragma once

#include <QtGlobal>

#include <png.h>

/// libpng's reader with its information about the picture.
///
/// When reading fails, the library leaves by a long jump and prints nothing. Whoever reads sets the
/// jump's destination, in a function with no object whose destructor the jump would skip. `info` is
/// null when there is not enough memory.
struct PngReader {
    PngReader();
    ~PngReader();
    Q_DISABLE_COPY_MOVE(PngReader)

    png_structp png;
    png_infop info;
};
