#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Searching: with a real keyboard in the window, from the shell, and as the desktops ask."""

import os
import pathlib
import shutil
import subprocess
import unittest

import case
import desktop
import panel
from windows import RECENT, ProgramWindows

DATABASE = pathlib.Path(os.environ["XDG_DATA_HOME"], "velmora", "search.db")
# Occurs in the page's text and in no name.
WORD = "treasurer"
QUESTION = "Search the text of your screenshots?"
READING_SECONDS = 240
SERVICE = "app.velmora.Velmora.Search"
SHELL_PATH = "/app/velmora/Velmora/SearchProvider"
SHELL = "org.gnome.Shell.SearchProvider2."
RUNNER_PATH = "/app/velmora/Velmora/Runner"
RUNNER = "org.kde.krunner1."


class Search(ProgramWindows, case.EndToEnd):
    def setUp(self):
        shutil.rmtree(DATABASE.parent, ignore_errors=True)
        super().setUp()
        self.picture = self.drop_named()
        self.assertTrue(self.velmora.act("recent"))
        self.wait_for_front(RECENT)

    def texts(self):
        tree = self.velmora.elements()
        return [each["name"] for each in desktop.leaves(tree) if each["showing"]] if tree else []

    def wait_for_text(self, part, seconds=READING_SECONDS):
        desktop.wait_until(lambda: any(part in text for text in self.texts()),
                           f"{part} in {self.texts()}", seconds)

    def agree(self):
        desktop.type_text(WORD)
        self.wait_for_text(QUESTION)
        self.assertFalse(DATABASE.exists())
        desktop.press("Tab")
        desktop.press("Tab")
        desktop.press("space")

    def find(self, *words):
        """The paths that the command prints."""
        done = subprocess.run([case.BUILD / "command" / "velmora-name", "--find", *words],
                              stdout=subprocess.PIPE, stderr=subprocess.PIPE, timeout=20)
        self.assertEqual(done.returncode, 0 if done.stdout else 1)
        return done.stdout.decode().splitlines()

    def test_what_is_typed_finds_text_for_who_has_agreed(self):
        self.agree()
        self.wait_for_text("says the " + WORD)
        self.assertEqual(self.find(WORD), [str(self.picture)])
        self.assertEqual(self.find(WORD.upper(), "quarterly"), [str(self.picture)])
        self.assertEqual(self.find("absent"), [])
        self.assertEqual(DATABASE.stat().st_mode & 0o777, 0o600)
        self.assertEqual(DATABASE.parent.stat().st_mode & 0o777, 0o700)
        self.ask_as_desktops_do()

    def ask_as_desktops_do(self):
        found = panel.call(SERVICE, SHELL_PATH, SHELL + "GetInitialResultSet", f"['{WORD}']")
        identifier = self.picture.as_uri()
        self.assertEqual(found, f"(['{identifier}'],)")
        described = panel.call(SERVICE, SHELL_PATH, SHELL + "GetResultMetas", f"['{identifier}']")
        for part in (self.picture.name, "says the " + WORD, "icon-data"):
            self.assertIn(part, described)
        matches = panel.call(SERVICE, RUNNER_PATH, RUNNER + "Match", f"{WORD} quart")
        self.assertIn(f"('{identifier}', '{self.picture.name}'", matches)
        # The shell's own way to open the program's window.
        desktop.press("Escape")
        panel.call(SERVICE, SHELL_PATH, SHELL + "LaunchSearch", "['harvest', 'better']", "0")
        self.wait_for_text("The harvest was")

    def test_who_refuses_finds_names_and_nothing_is_stored(self):
        desktop.type_text("quart")
        self.wait_for_text(QUESTION)
        desktop.press("Escape")
        self.wait_for_text("Searching names only.")
        self.wait_for_text("1 found")
        self.assertEqual(self.find("quarterly"), [])
        self.assertFalse(DATABASE.exists())
        self.assertIsNone(panel.call(SERVICE, RUNNER_PATH, RUNNER + "Match", "quarterly"))
        self.assertEqual(desktop.read_settings()["General"].get("searchConsent"), "refused")

    def test_a_kill_while_it_reads_loses_nothing_but_time(self):
        self.agree()
        desktop.wait_until(DATABASE.exists, "the database is there")
        self.velmora.kill()
        self.velmora.start()
        desktop.wait_until(lambda: self.find(WORD) == [str(self.picture)], "it is found",
                           READING_SECONDS)


if __name__ == "__main__":
    unittest.main(verbosity=2)
