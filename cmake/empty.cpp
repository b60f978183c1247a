// SPDX-License-Identifier: MIT
// A target needs a source for its precompiled header to be made.
