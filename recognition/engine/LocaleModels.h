// SPDX-License-Identifier: MIT
#pragma once

#include <QLocale>
#include <QStringList>

/// The engine's names for the models of a locale's languages, such as "deu" for German. Empty for
/// English, which is always read.
QStringList localeModels(const QLocale &locale);
