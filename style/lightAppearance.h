// SPDX-License-Identifier: MIT
#pragma once

/// Gives every window of the program, its dialogs, lists and tool tips the program's light look,
/// whatever the desktop's theme is or becomes. Call it once, when the application object exists.
/// Main thread.
void applyLightAppearance();
