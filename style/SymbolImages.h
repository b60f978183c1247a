// SPDX-License-Identifier: MIT
#pragma once

#include <QColor>
#include <QIcon>
#include <QString>

/// The program's own symbol of this name ("doc.on.doc", "folder", "trash", …) in one colour, crisp
/// at every scale factor; grey on a disabled control. A null icon when there is no such symbol.
QIcon symbolIcon(const QString &name, const QColor &color);
