// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

struct PictureTexts;

/// The application that a picture shows, or that made it, as far as its own texts tell; empty
/// otherwise. A screenshot tool and a library are no applications here. Any thread.
QString applicationOfPicture(const PictureTexts &texts);
