#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What the program still knows after a restart, and what stays undone."""

import unittest

import case
import desktop

LONGER_THAN_THE_WATCHER_LOOKS_SECONDS = 2.5


class Restart(case.EndToEnd):
    def recent_names(self):
        """The files that the recent window lists, top to bottom; nothing while it is closed."""
        tree = self.tools.tree(self.velmora.pid)
        windows = [each for each in tree["children"] if each["name"] == "Recent Screenshots"]
        if not windows or not windows[0]["showing"]:
            return []
        labels = [each for each in desktop.leaves(windows[0]) if each["role"] == "label"]
        files = [each for each in labels if each["name"].endswith(".png")]
        return [each["name"] for each in sorted(files, key=lambda each: each["place"][1])]

    def open_recent(self, wanted):
        """Opens the window, which shows these files."""
        self.assertTrue(self.velmora.act("recent"))
        desktop.wait_until(
            lambda: self.recent_names() == wanted, f"{wanted}, not {self.recent_names()}"
        )

    def two_named(self):
        return [self.drop_named(title).name for title in ("Alpha Glacier", "Bravo Harbour")][::-1]

    def test_the_recent_window_shows_the_same_after_a_kill(self):
        names = self.two_named()
        self.open_recent(names)
        self.velmora.kill()
        self.velmora.start()
        self.open_recent(names)

    def undo(self, is_undone):
        """Undoes once; the file then has a matching name. Returns that name."""
        self.assertTrue(self.velmora.act("undo"))
        return desktop.wait_until(
            lambda: (names := desktop.pictures()) and is_undone(names[0]) and names[0],
            f"another name than {desktop.pictures()}",
        )

    def test_what_the_menu_has_undone_stays_undone(self):
        content = self.drop_named().read_bytes()
        saved = self.detected()
        first = self.undo(case.FALLBACK.fullmatch)
        self.expect_left_alone(first, saved)
        second = self.undo(lambda name: str(desktop.FOLDER / name) == saved[0])
        self.expect_left_alone(second, saved)
        self.assertEqual((desktop.FOLDER / second).read_bytes(), content)
        self.open_recent([second])

    def expect_left_alone(self, name, detected):
        """The file is not taken for a new screenshot."""
        untouched = desktop.stays(
            lambda: desktop.pictures() == [name] and self.detected() == detected,
            LONGER_THAN_THE_WATCHER_LOOKS_SECONDS,
        )
        self.assertTrue(untouched, f"{desktop.pictures()}, {self.velmora.log.own_messages()}")


if __name__ == "__main__":
    unittest.main(verbosity=2)
