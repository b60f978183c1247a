// SPDX-License-Identifier: MIT
#pragma once

#include "platform/FrontmostApplication.h"
#include "platform/linux/applications/DesktopEntries.h"
#include "platform/linux/applications/FocusedWindow.h"

#include <optional>

/// Whether this is a window that the user works in: it is not a panel or the desktop, does not
/// belong to this program, a screenshot tool or a launcher, and gives a plausible name for its
/// application. Any thread.
bool isWorkingWindow(const FocusedWindow &window);

/// The application that the window belongs to: its desktop entry's name in the user's language, and
/// the entry's id. Without an entry, the window's class with a capital first letter, and no id. Any
/// thread; reads one desktop entry.
Application applicationOf(const FocusedWindow &window, const DesktopEntries &entries);
