#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The dialogs of the welcome window, while the user asks for something else over the bus, from the
status menu or with the keyboard."""

import configparser
import os
import pathlib
import unittest

import case
import desktop
import panel
from windows import RECENT, WELCOME, ProgramWindows, title_of

ALERT = "Screenshot folder access"
CHOOSER = "Choose Screenshot Folder"
SETTLED_SECONDS = 0.5
DOMAIN = pathlib.Path(os.environ["XDG_CONFIG_HOME"], "velmora", "com.apple.screencapture.conf")


class Dialogs(ProgramWindows, case.EndToEnd):
    def setUp(self):
        DOMAIN.unlink(missing_ok=True)
        super().setUp()
        self.show_welcome()

    def show_welcome(self):
        self.assertTrue(self.velmora.activate())
        self.wait_for_front(WELCOME)

    def elements(self):
        """Everything that the program shows, as assistive technologies see it."""
        tree = self.velmora.elements()
        return [each for each in desktop.leaves(tree) if each["showing"]] if tree else []

    def element(self, name):
        return next((each for each in self.elements() if each["name"] == name), None)

    def press(self, name):
        button = desktop.wait_until(lambda: self.element(name), f"a button {name}")
        desktop.click(*desktop.middle(button))

    def wait_for_text(self, text):
        desktop.wait_until(lambda: self.element(text), f"the text {text}")

    def wait_for_chooser(self):
        desktop.wait_until(
            lambda: CHOOSER in map(title_of, self.dialogs()), "the folder chooser is there"
        )
        desktop.wait_until(
            lambda: desktop.active_window() in self.dialogs(), "the folder chooser is in front"
        )

    def open_alert(self):
        self.press("Change Folder")
        self.wait_for_text(ALERT)

    def open_chooser(self):
        self.open_alert()
        self.press("OK")
        self.wait_for_chooser()

    def check_fresh_window(self):
        """Only the new window is there, it works, and the program keeps running."""
        self.wait_for_front(WELCOME)
        desktop.wait_until(lambda: self.element("Instant Mode On"), "the new state is shown")
        desktop.wait_until(lambda: not self.dialogs(), "the dialogs have ended")
        quiet = desktop.stays(
            lambda: self.velmora.is_running and not self.dialogs(), SETTLED_SECONDS
        )
        self.assertTrue(quiet, self.velmora.exit_code)
        desktop.press("Return")
        desktop.wait_until(lambda: not self.window(WELCOME), "Done closes the window")
        self.assertTrue(self.velmora.is_running)

    def test_instant_over_the_bus_ends_the_chooser(self):
        self.open_chooser()
        self.assertTrue(self.velmora.act("instant"))
        self.check_fresh_window()

    def test_instant_from_the_menu_ends_the_chooser(self):
        bar = panel.Panel()
        self.addCleanup(bar.close)
        self.open_chooser()
        bar.choose(self.velmora.pid, "Make Screenshots Instant")
        self.check_fresh_window()

    def test_the_recent_window_ends_the_chooser(self):
        self.open_chooser()
        self.assertTrue(self.velmora.act("recent"))
        self.wait_for_front(RECENT)
        desktop.wait_until(lambda: not self.dialogs(), "the chooser has ended")
        self.show_welcome()
        self.open_again()

    def open_again(self):
        """The explanation is not repeated once it was read."""
        self.press("Change Folder")
        self.wait_for_chooser()

    def test_quitting_with_an_open_chooser_ends_well(self):
        self.open_chooser()
        self.assertTrue(self.velmora.act("quit"))
        desktop.wait_until(lambda: not self.velmora.is_running, "the program has ended")
        self.assertEqual(self.velmora.exit_code, 0)

    def test_the_status_is_shown_with_its_dialog_in_front(self):
        self.open_chooser()
        self.velmora.activate()
        self.wait_for_chooser()
        desktop.press("Escape")
        desktop.wait_until(lambda: not self.dialogs(), "the chooser has ended")
        self.wait_for_front(WELCOME)

    def test_a_chosen_folder_is_watched_and_stored(self):
        chosen = self.outside / "Shots"
        chosen.mkdir()
        self.open_chooser()
        desktop.type_text(str(chosen))
        desktop.press("Return")
        desktop.wait_until(lambda: self.element(str(chosen)), "the window names the folder")
        store = configparser.ConfigParser()
        desktop.wait_until(lambda: store.read(DOMAIN), "the folder is stored")
        self.assertEqual(store["General"]["location"], str(chosen))
        (chosen / "Screenshot.png").write_bytes(self.picture_bytes())
        desktop.wait_until(
            lambda: (chosen / f"{case.TITLE_NAME}.png").exists(), "its name", case.NAMING_SECONDS
        )

    def test_ctrl_w_closes_every_window(self):
        self.open_alert()
        desktop.press("ctrl+w")
        self.wait_for_chooser()
        desktop.press("ctrl+w")
        desktop.wait_until(lambda: not self.dialogs(), "the chooser has ended")
        self.wait_for_front(WELCOME)
        desktop.press("ctrl+w")
        desktop.wait_until(lambda: not self.window(WELCOME), "the welcome window has gone")
        self.velmora.act("recent")
        self.wait_for_front(RECENT)
        desktop.press("ctrl+w")
        desktop.wait_until(lambda: not self.window(RECENT), "the recent window has gone")
        self.assertTrue(self.velmora.is_running)


if __name__ == "__main__":
    unittest.main(verbosity=2)
