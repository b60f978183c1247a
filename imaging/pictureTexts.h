// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// What a picture file says about itself. Anyone may have written it.
struct PictureTexts {
    QString windowTitle; ///< the window that the picture shows, as some screenshot tools record it
    QString software;    ///< the program that made the file
};

/// The texts before the pixels of a PNG file, each of at most `longestPictureText` characters, in
/// one line and without control characters; empty ones when the file has none, has another format
/// or is damaged. However many texts the file contains, little memory is used. The caller keeps the
/// descriptor; its position does not matter. Any thread; blocks on the file.
PictureTexts pictureTexts(int descriptor);

constexpr qsizetype longestPictureText = 256;
