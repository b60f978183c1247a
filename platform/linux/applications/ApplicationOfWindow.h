// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FrontmostApplication.h"
#include "platform/linux/applications/DesktopEntries.h"
#include "platform/linux/applications/FocusedWindow.h"

#include <optional>

/// Whether the user can be said to work in this window: it is no panel or desktop, not of this
/// program and not of a screenshot tool or launcher, and says by a fair name what it is. Any
/// thread.
bool isWorkingWindow(const FocusedWindow &window);

/// The application that the window belongs to: its desktop entry's name in the user's language and
/// its id; without an entry the window's class with its first letter raised, and no id. Any thread;
/// reads one desktop entry.
Application applicationOf(const FocusedWindow &window, const DesktopEntries &entries);
