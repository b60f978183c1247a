// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The token that replaces the application's own tokens, which are joined to `key`; a null string
/// if there is none.
QString applicationAlias(const QString &key);
