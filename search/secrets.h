// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

/// The lines of a page without what looks like a secret: numbers of payment cards and bank
/// accounts (by their check digits), keys and tokens, one-time codes, and what follows "password"
/// in several languages. What is left out leaves a space; a line may be empty then. It errs to the
/// safe side: now and then an innocent number goes too. Pure; any thread.
QStringList withoutSecrets(const QStringList &lines);
