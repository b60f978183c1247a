#pragma once

#include "recognition/engine/Engine.h"

/// Whether what the engine read is a word that stands in the picture, and not an icon, a rule, a
/// texture or a guess.
bool isRealWord(const ReadWord &word);
