// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// What a picture file says about itself. Anybody may have written it.
struct PictureTexts {
    QString windowTitle; ///< the window that the picture shows, as some screenshot tools note it
    QString software;    ///< the program that made the file
};

/// The texts before the pixels of a PNG file, each of at most `longestPictureText` characters, in
/// one line and without control characters; empty ones where the file has none, is another or is
/// damaged. However many texts the file holds, little memory is used. The descriptor stays the
/// caller's; its position does not matter. Any thread; blocks for the file.
PictureTexts pictureTexts(int descriptor);

constexpr qsizetype longestPictureText = 256;
