#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Start at login: the check box makes a valid entry, and a real session starts the program by it."""

import os
import pathlib
import subprocess
import unittest

import case
import desktop
from windows import WELCOME, ProgramWindows

ENTRY = pathlib.Path(
    os.environ["XDG_CONFIG_HOME"], "autostart", "app.velmora.Velmora.desktop"
)


def elements(node):
    yield node
    for child in node["children"]:
        yield from elements(child)


class Login(ProgramWindows, case.EndToEnd):
    settings = {"didExplainStartAtLogin": "true"}

    def setUp(self):
        ENTRY.unlink(missing_ok=True)
        self.addCleanup(ENTRY.unlink, missing_ok=True)
        super().setUp()
        subprocess.run([case.BUILD / "app" / "velmora"], timeout=20)
        self.wait_for_front(WELCOME)

    def click_check_box(self):
        def place():
            tree = self.tools.tree(self.velmora.pid)
            for each in elements(tree) if tree else []:
                if each["role"] == "check box" and each["name"] == "Start at login":
                    return each["place"]
            return None

        x, y, _, height = desktop.wait_until(place, "the check box")
        desktop.click(x + 10, y + height // 2)

    def test_the_check_box_makes_a_valid_entry_and_takes_it_away(self):
        self.click_check_box()
        desktop.wait_until(ENTRY.exists, "the entry")
        self.assertEqual(desktop.run("desktop-file-validate", ENTRY), b"")
        self.click_check_box()
        desktop.wait_until(lambda: not ENTRY.exists(), "the entry has gone")

    def test_a_session_starts_the_program(self):
        self.click_check_box()
        desktop.wait_until(ENTRY.exists, "the entry")
        self.velmora.stop()
        log = desktop.Log()
        subprocess.run(
            [next(pathlib.Path("/usr/lib").glob("*/openbox-xdg-autostart")), "GNOME"],
            check=True,
            timeout=20,
        )
        self.addCleanup(self.quit_started_program)
        desktop.wait_until(
            lambda: log.count(f"watching {desktop.FOLDER}"), "the program watches the folder", 20
        )

    def quit_started_program(self):
        desktop.wait_until(lambda: self.velmora.act("quit"), "the program hears that it shall quit")
        desktop.wait_until(lambda: not self.velmora.is_on_bus(), "the program has ended")


if __name__ == "__main__":
    unittest.main(verbosity=2)
