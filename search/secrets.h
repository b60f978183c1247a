// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

/// The lines of a page without anything that looks like a secret: payment card and bank account
/// numbers (recognised by their check digits), keys and tokens, one-time codes, and what follows
/// "password" in several languages. A removed secret leaves a space; a line may become empty. It
/// errs on the safe side: sometimes a harmless number is removed, too. Pure; any thread.
QStringList withoutSecrets(const QStringList &lines);
