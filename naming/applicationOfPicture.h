// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

struct PictureTexts;

/// The application that a picture shows or that created it, according to its own texts; empty if
/// they do not say. Screenshot tools and libraries do not count. Any thread.
QString applicationOfPicture(const PictureTexts &texts);
