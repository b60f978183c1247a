// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// The text in lower case and without accents, in composed form: "Café" gives "cafe".
///
/// Only letters of the scripts where a mark is an accent lose it (Latin, Greek, Cyrillic, Hebrew,
/// Arabic); a Japanese voicing mark or an Indic vowel sign makes another letter and stays. It does
/// not depend on the user's language: the same picture gets the same name everywhere.
QString foldedText(const QString &text);
