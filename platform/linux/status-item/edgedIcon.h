#pragma once

#include <QIcon>

/// The icon with a light edge around its dark shapes: it can be told from a dark bar as well as
/// from a light one. Main thread.
QIcon edgedIcon(const QIcon &icon);
