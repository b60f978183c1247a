#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""velmora-name renames files in the folder that the program watches."""

import os
import subprocess
import time
import unittest

import case
import desktop
from restart import LONGER_THAN_THE_WATCHER_LOOKS_SECONDS
from windows import RECENT, ProgramWindows

DAY_SECONDS = 24 * 3600
OLD = {
    "Screenshot from 2024-03-05 10-11-12.png": "Alpine Bakery",
    "Screenshot from 2024-03-05 10-11-31.png": "Coastal Castle",
    "Bildschirmfoto vom 2024-05-17 08-02-40.png": "Desert Harbour",
}
LISTING_SECONDS = 60


def names_in_folder():
    return sorted(os.listdir(desktop.FOLDER))


def contents():
    return sorted(path.read_bytes() for path in desktop.FOLDER.iterdir())


class BesideTheCommand(ProgramWindows, case.EndToEnd):
    settings = {"searchConsent": "given"}

    def command(self, *arguments):
        """The lines that it prints, split at the tabs."""
        done = subprocess.run([case.BUILD / "command" / "velmora-name", *arguments], timeout=60,
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        return [line.split("\t") for line in done.stdout.decode().splitlines()]

    def put_old(self):
        for name, title in OLD.items():
            path = self.outside / name
            self.tools.save_page(title, case.PARAGRAPH, path)
            then = time.time() - DAY_SECONDS
            os.utime(path, (then, then))
            path.rename(desktop.FOLDER / name)

    def listed_in_window(self):
        """The files that the recent window shows."""
        tree = self.tools.tree(self.velmora.pid) or {"children": []}
        windows = [each for each in tree["children"] if each["name"] == RECENT]
        names = [each["name"] for window in windows for each in desktop.leaves(window)]
        return sorted(name for name in names if name.endswith(".png"))

    def shows_on_return(self, names):
        """Whether the recent window shows these files when the user comes back to it."""
        for window in self.page.window, self.window(RECENT):
            desktop.run("xdotool", "windowactivate", "--sync", str(window))
            # Qt takes a shorter absence for none.
            desktop.let_pass(1)
        return self.listed_in_window() == sorted(names)

    def expect_followed(self, names, detected):
        """The folder holds these files, the program knows them, and takes none for a new one."""
        self.assertEqual(names_in_folder(), sorted(names))
        desktop.wait_until(lambda: self.shows_on_return(names), f"{names} in the window", 60)
        for name in names:
            path = str(desktop.FOLDER / name)
            desktop.wait_until(lambda: self.command("--find", name[:-4]) == [[path]],
                               f"{name} is found", LISTING_SECONDS)
        self.assertTrue(desktop.stays(lambda: self.detected() == detected,
                                      LONGER_THAN_THE_WATCHER_LOOKS_SECONDS), self.detected())
        self.assertEqual(names_in_folder(), sorted(names))

    def test_old_screenshots_get_names_and_lose_them_again(self):
        self.put_old()
        before = contents()
        self.assertTrue(self.velmora.act("recent"))
        self.wait_for_front(RECENT)
        self.expect_followed(OLD, [])
        renamed = self.command("--rename", str(desktop.FOLDER))
        self.assertEqual(len(renamed), len(OLD))
        self.expect_followed([os.path.basename(new) for _, new in renamed], [])
        self.assertEqual(len(self.command("--undo")), len(OLD))
        self.expect_followed(OLD, [])
        self.assertEqual(contents(), before)

    def test_a_new_screenshot_that_the_command_renames_is_no_second_one(self):
        path = self.drop_named()
        before = contents()
        detected = self.detected()
        self.assertTrue(self.velmora.act("recent"))
        self.wait_for_front(RECENT)
        renamed = self.command("--all", "--app", "Lighthouse", "--rename", str(path))
        self.assertEqual(len(renamed), 1)
        self.expect_followed([os.path.basename(renamed[0][1])], detected)
        self.command("--undo")
        self.expect_followed([path.name], detected)
        self.assertEqual(contents(), before)


if __name__ == "__main__":
    unittest.main(verbosity=2)
