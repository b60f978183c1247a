// SPDX-License-Identifier: MIT
#pragma once

/// Makes the recognition library do its work for the calling thread on that thread alone. On one
/// line of text its own threads cost more than they gain.
void keepLibraryOnThisThread();
