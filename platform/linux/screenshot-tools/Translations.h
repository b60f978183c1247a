// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Texts of other programs in the language of the session. Any thread, by one at a time.
namespace Translations
{

/// What the program of that message catalogue makes of its own English text; the text itself where
/// it is not installed or says the same.
QString translated(const char *catalogue, const char *text);

} // namespace Translations
