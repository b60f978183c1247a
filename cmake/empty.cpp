// SPDX-License-Identifier: MIT
// A target needs a source before its precompiled header can be built.
