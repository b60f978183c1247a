// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The text with invisible places for a line break: after each character that ends a part of a path
/// or of a name, and within parts that are longer than a line should be. When it wraps, it stays
/// within its width whatever it says.
QString breakableText(const QString &text);
