# SPDX-License-Identifier: MIT
"""The program's own windows, for cases that examine them."""

import contextlib
import subprocess

import desktop

WELCOME = "Velmora"
RECENT = "Recent Screenshots"

# The tray has the program's name too, and is lower than any other window.
LOWEST_WINDOW = max(desktop.TRAY_HEIGHTS.values()) + 1


def title_of(window):
    return desktop.window_property(window, "_NET_WM_NAME").strip('"')


def is_dialog(window):
    return "_DIALOG" in desktop.window_property(window, "_NET_WM_WINDOW_TYPE")


class ProgramWindows:
    """A mixin for cases. They begin with the welcome window closed."""

    def window(self, title):
        """The program's visible window with this title."""
        for window in desktop.windows_of(self.velmora.pid):
            if title_of(window) != title or is_dialog(window):
                continue
            # It may have been closed since it was listed.
            with contextlib.suppress(subprocess.CalledProcessError):
                if desktop.geometry(window)[3] >= LOWEST_WINDOW:
                    return window
        return None

    def dialogs(self):
        """The program's visible dialogs."""
        return [window for window in desktop.windows_of(self.velmora.pid) if is_dialog(window)]

    def is_in_front(self, title):
        window = self.window(title)
        return window is not None and window == desktop.active_window()

    def wait_for_front(self, title):
        desktop.wait_until(lambda: self.is_in_front(title), f"the window {title} is in front")
