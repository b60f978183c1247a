// SPDX-License-Identifier: MIT
#pragma once

/// The output of --help.
extern const char *const usageText;
