// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The text in lower case, without accents, in composed form: "Café" becomes "cafe".
///
/// Marks are removed only in scripts where they are accents (Latin, Greek, Cyrillic, Hebrew,
/// Arabic). A Japanese voicing mark or an Indic vowel sign makes another letter and stays. The
/// result does not depend on the user's language: the same picture gets the same name everywhere.
QString foldedText(const QString &text);
