// SPDX-License-Identifier: MIT
#pragma once

class LayerShell;
class QScreen;

/// The screen that the user works on: the one that the compositor chooses for a new panel, which is
/// an invisible one of a single pixel. Null if the compositor has none, or doesn't tell in time.
/// Main thread; blocks for that long.
QScreen *activeScreen(const LayerShell &shell);
