// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The one token that stands for the application whose tokens are joined to `key`; a null string
/// where there is none.
QString applicationAlias(const QString &key);
