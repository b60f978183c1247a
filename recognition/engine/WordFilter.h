// SPDX-License-Identifier: MIT
#pragma once

#include "recognition/engine/Engine.h"

/// Whether the engine read a word that is in the picture, rather than an icon, a rule, a texture or
/// a guess.
bool isRealWord(const ReadWord &word);
