#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What assistive technologies see of the program's windows."""

import unittest

import case
import desktop
from windows import RECENT, WELCOME, ProgramWindows


def all_of(element):
    yield element
    for child in element["children"]:
        yield from all_of(child)


class Assistive(ProgramWindows, case.EndToEnd):
    def shown(self):
        """The program's window that is shown beside the tray."""
        tree = self.velmora.elements()
        windows = tree["children"] if tree else []
        lowest = max(desktop.TRAY_HEIGHTS.values())
        return next((w for w in windows if w["showing"] and w["place"][3] > lowest), None)

    def test_the_program_and_its_welcome_window_have_names(self):
        self.velmora.activate()
        self.wait_for_front(WELCOME)
        window = desktop.wait_until(self.shown, "the welcome window")
        self.assertEqual((window["role"], window["name"]), ("frame", WELCOME))
        self.assertEqual(self.velmora.elements()["name"], "Velmora")

    def test_the_rows_of_the_recent_window_are_named_after_their_files(self):
        paths = [self.drop_named("Harvest Festival Invitation"), self.drop_named()]
        self.velmora.act("recent")
        self.wait_for_front(RECENT)

        def rows():
            names = [path.name for path in paths]
            found = [each for each in all_of(self.shown() or {"children": [], "name": ""})
                     if each["name"] in names and each["children"]]
            return found if len(found) == 2 else None

        groups = desktop.wait_until(rows, "two rows")
        self.assertEqual((self.shown()["role"], self.shown()["name"]), ("frame", RECENT))
        self.assertEqual([group["name"] for group in groups], [p.name for p in reversed(paths)])
        for group in groups:
            parts = [(each["role"], each["name"]) for each in desktop.leaves(group)]
            # Qt's word for an image.
            self.assertEqual(parts[0], ("graphic", "Thumbnail"))
            self.assertEqual(parts[1], ("label", group["name"]))
            names = [name for _, name in parts[2:]]
            self.assertEqual(names, ["Copy", "Show in File Manager", "Move to Trash"])
            image = next(desktop.leaves(group))
            self.assertEqual(image["description"], f"Thumbnail of {group['name']}")


if __name__ == "__main__":
    unittest.main(verbosity=2)
