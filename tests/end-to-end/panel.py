# SPDX-License-Identifier: MIT
"""A real panel with a status tray, and what it and other programs get from Velmora's item."""

import os
import pathlib
import re
import shutil
import subprocess

import desktop

SETTINGS = pathlib.Path(__file__).parents[1] / "world" / "xfce4-panel.xml"
FIRST_ITEM = (12, 16)
ENTRIES = [
    "Show Status",
    "Show Recent Screenshots",
    "Undo Last Action",
    "Make Screenshots Instant",
    "Reveal Screenshot Folder",
    "Quit Velmora",
]
# The positions of the entries, as shares of the menu's height; the last but one is a separator.
PLACES = dict(zip(ENTRIES, (0.09, 0.25, 0.41, 0.58, 0.74, 0.92)))


def call(service, path, method, *arguments):
    """The answer of a method on the session bus, as gdbus prints it; nothing when it fails."""
    done = desktop.output_of(
        "gdbus", "call", "--session", "--dest", service, "--object-path", path,
        "--method", method, *arguments,
    )
    return done.stdout.decode().strip() if done.returncode == 0 else None


class Panel:
    def __init__(self):
        folder = pathlib.Path(os.environ["XDG_CONFIG_HOME"], "xfce4/xfconf/xfce-perchannel-xml")
        folder.mkdir(parents=True, exist_ok=True)
        shutil.copy(SETTINGS, folder)
        self._process = subprocess.Popen(
            ["xfce4-panel", "--disable-wm-check"],
            stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL,
        )

    def close(self):
        self._process.terminate()
        try:
            self._process.wait(5)
        except subprocess.TimeoutExpired:
            self._process.kill()
            self._process.wait(5)
        desktop.wait_until(lambda: self._items() is None, "the panel has ended")

    @staticmethod
    def _items():
        return call(
            "org.kde.StatusNotifierWatcher", "/StatusNotifierWatcher",
            "org.freedesktop.DBus.Properties.Get",
            "org.kde.StatusNotifierWatcher", "RegisteredStatusNotifierItems",
        )

    def item(self):
        """The bus address of the first item."""
        found = re.search(r"'(:[0-9.]+)/", self._items() or "")
        return found and found.group(1)

    def wait_for_item(self):
        return desktop.wait_until(self.item, "an item in the panel", 20)

    def entries(self):
        """The menu on the bus: titles and whether they are enabled, in order; "-" separates."""
        layout = call(
            self.wait_for_item(), "/MenuBar", "com.canonical.dbusmenu.GetLayout",
            "0", "int32 -1", "[]",
        )
        entries = []
        for properties in re.findall(r"\((?:int32 )?\d+, (\{[^{}]*\}), ", layout)[1:]:
            label = re.search(r"'label': <'([^']*)'>", properties)
            title = label.group(1) if label else ""
            if "'type': <'separator'>" in properties:
                title = "-"
            entries.append((title, "'enabled': <false>" not in properties))
        return entries

    @staticmethod
    def _open(pid):
        """The window of the menu. The panel knows an item before it shows it, so the first click
        may be too early."""
        before = set(desktop.windows_of(pid))
        opened = lambda: set(desktop.windows_of(pid)) - before  # noqa: E731

        def opens():
            desktop.click(*FIRST_ITEM)
            desktop.stays(lambda: not opened(), 2)
            return opened()

        return desktop.wait_until(opens, "the menu has opened").pop()

    def choose(self, pid, title):
        """Opens the item's menu with a click, and clicks the entry with the title."""
        self.wait_for_item()
        menu = self._open(pid)
        x, y, width, height = desktop.geometry(menu)
        desktop.click(x + width // 3, y + int(height * PLACES[title]))
        closed = lambda: menu not in desktop.windows_of(pid)  # noqa: E731
        desktop.wait_until(closed, "the menu has closed")
