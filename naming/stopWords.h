// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

/// Whether the token says nothing about a screenshot.
bool isStopWord(const QString &token);
