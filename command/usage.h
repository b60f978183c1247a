// SPDX-License-Identifier: MIT
#pragma once

/// What --help prints.
extern const char *const usageText;
