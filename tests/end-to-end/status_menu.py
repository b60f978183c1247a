#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The status item in a real panel: opens its menu, clicks every entry, reads titles and states."""

import configparser
import os
import pathlib
import subprocess
import unittest

import case
import desktop
import panel
from windows import RECENT, WELCOME, ProgramWindows


class StatusMenu(ProgramWindows, case.EndToEnd):
    def setUp(self):
        self.panel = panel.Panel()
        self.addCleanup(self.panel.close)
        super().setUp()

    def choose(self, title):
        self.panel.choose(self.velmora.pid, title)

    def undo_entry(self):
        return self.panel.entries()[2]

    def test_other_programs_read_titles_and_states(self):
        self.panel.wait_for_item()
        entries = self.panel.entries()
        titles = panel.ENTRIES[:5] + ["-"] + panel.ENTRIES[5:]
        self.assertEqual([title for title, _ in entries], titles)
        disabled = [title for title, enabled in entries if not enabled]
        self.assertEqual(disabled, ["Undo Last Action"])

    def test_other_programs_read_the_items_name(self):
        item = self.panel.wait_for_item()
        name = "org.kde.StatusNotifierItem"
        method = "org.freedesktop.DBus.Properties.Get"
        title = panel.call(item, "/StatusNotifierItem", method, name, "Title")
        self.assertEqual(title, "(<'Velmora'>,)")
        tool_tip = panel.call(item, "/StatusNotifierItem", method, name, "ToolTip")
        self.assertIn("'Velmora'", tool_tip)
        self.assertEqual(self.velmora.elements()["name"], "Velmora")

    def test_show_status_brings_the_welcome_window_back(self):
        self.choose("Show Status")
        self.wait_for_front(WELCOME)

    def test_show_recent_screenshots_opens_their_window(self):
        self.choose("Show Recent Screenshots")
        self.wait_for_front(RECENT)

    def test_undo_last_action_takes_back_a_rename(self):
        path = self.drop_named()
        desktop.wait_until(
            lambda: self.undo_entry() == ("Undo Rename", True), "the entry names the rename"
        )
        self.choose("Undo Last Action")
        desktop.wait_until(lambda: not path.exists(), "the file has its former name")
        self.assertEqual(len(desktop.pictures()), 1)
        self.assertRegex(desktop.pictures()[0], case.FALLBACK)

    def test_undo_last_action_brings_a_file_back_from_the_trash(self):
        path = self.drop_named()
        desktop.click(*self.velmora.rows()[0].button("Move to Trash"))
        desktop.wait_until(lambda: not path.exists(), "the file is in the trash")
        desktop.wait_until(
            lambda: self.undo_entry() == ("Undo Trash", True), "the entry names the trash"
        )
        self.choose("Undo Last Action")
        desktop.wait_until(path.exists, "the file is back")

    def test_make_screenshots_instant_is_kept(self):
        self.choose("Make Screenshots Instant")
        message = "disable Apple screenshot thumbnail"
        desktop.wait_until(lambda: self.velmora.log.count(message), "the log tells of it")
        store = pathlib.Path(
            os.environ["XDG_CONFIG_HOME"], "velmora", "com.apple.screencapture.conf"
        )
        settings = configparser.ConfigParser()
        desktop.wait_until(lambda: settings.read(store), "the setting is stored")
        self.assertEqual(settings["General"]["show-thumbnail"], "false")
        self.wait_for_front(WELCOME)

    def test_reveal_screenshot_folder_opens_a_file_manager(self):
        self.addCleanup(subprocess.run, ["thunar", "--quit"], capture_output=True, timeout=20)
        self.choose("Reveal Screenshot Folder")

        def file_manager():
            done = desktop.output_of("xdotool", "search", "--onlyvisible", "--class", "thunar")
            return [int(word) for word in done.stdout.split()]

        desktop.wait_until(file_manager, "the file manager's window", 30)

    def test_quit_velmora_ends_the_program_well(self):
        self.choose("Quit Velmora")
        desktop.wait_until(lambda: not self.velmora.is_running, "the program has ended")
        self.assertEqual(self.velmora.exit_code, 0)

    def test_the_shortcuts_work_in_the_programs_windows(self):
        path = self.drop_named()
        desktop.wait_until(lambda: self.undo_entry()[1], "there is something to undo")
        self.choose("Show Status")
        self.wait_for_front(WELCOME)
        desktop.press("ctrl+z")
        desktop.wait_until(lambda: not path.exists(), "the rename is undone")
        desktop.press("ctrl+r")
        self.wait_for_front(RECENT)
        desktop.press("ctrl+q")
        desktop.wait_until(lambda: not self.velmora.is_running, "the program has ended")
        self.assertEqual(self.velmora.exit_code, 0)

    def test_the_item_comes_back_with_the_panel(self):
        self.panel.wait_for_item()
        self.panel.close()
        self.panel = panel.Panel()
        self.addCleanup(self.panel.close)
        self.choose("Show Status")
        self.wait_for_front(WELCOME)


if __name__ == "__main__":
    unittest.main(verbosity=2)
