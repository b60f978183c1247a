// SPDX-License-Identifier: MIT
#pragma once

#include "platform/TextRecognizer.h"

/// For comparison: the engine reads the whole page in one call, with its own search for columns and
/// lines, on one thread, with its fast English model.
std::unique_ptr<TextRecognizer> makePageRecognizer();
