// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Texts of other programs in the language of the session. Any thread, one at a time.
namespace Translations
{

/// The translation of a program's English text in that message catalogue; the text itself when the
/// catalogue is not installed or has no other text for it.
QString translated(const char *catalogue, const char *text);

} // namespace Translations
