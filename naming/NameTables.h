#pragma once

#include <QString>

/// The words that say nothing about a screenshot, and the short names of some applications.
namespace NameTables
{

bool isStopWord(const QString &token);

/// The one token that stands for the application whose tokens are joined to `key`; a null string
/// where there is none.
QString applicationAlias(const QString &key);

} // namespace NameTables
