#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What a user does with a row: names, undoes, trashes, closes."""

import os
import pathlib
import unittest

import case
import desktop

SETTLED_SECONDS = 1.0


class Rows(case.EndToEnd):
    def edit(self, row, text):
        """Clicks into the name and replaces it."""
        desktop.click(*row.field)
        self.velmora.wait_for_row(lambda each: each.is_editing, "the field has the keyboard")
        desktop.press("ctrl+a")
        desktop.type_text(text)

    def press_button(self, name):
        """Clicks the first row's button."""
        row = self.velmora.wait_for_row(lambda each: each.button(name), f"a button {name}")
        desktop.click(*row.button(name))

    def first_row(self):
        return self.velmora.rows()[0]

    def test_a_row_shows_what_happens(self):
        self.drop()
        row = self.velmora.wait_for_row(lambda each: each.status, "a status")
        self.assertIn(row.status, ("Reading screen text...", "Renamed automatically"))
        self.assertEqual(row.freshness, "NEW")
        self.velmora.wait_for_row(
            lambda each: each.status == "Renamed automatically", "the outcome", case.NAMING_SECONDS
        )

    def test_return_renames_to_the_typed_name(self):
        self.drop_named()
        self.edit(self.first_row(), "Board Minutes")
        desktop.press("Return")
        self.wait_for_name("board-minutes.png")
        self.velmora.wait_for_row(
            lambda each: each.status == "Saved as board-minutes.png"
            and each.filename == "board-minutes.png",
            "the outcome",
        )
        self.assertEqual(desktop.pictures(), ["board-minutes.png"])

    def test_typing_before_the_suggestion_keeps_the_users_name(self):
        content = self.picture_bytes()
        path = desktop.FOLDER / "slow.png"
        with path.open("wb", buffering=0) as file:
            file.write(content[: len(content) // 2])
            row = self.velmora.wait_for_row(lambda each: True, "a row")
            self.edit(row, "m")
            self.velmora.wait_for_row(lambda each: each.filename == "m", "the typed letter")
            file.write(content[len(content) // 2:])
        untouched = desktop.stays(
            lambda: self.first_row().filename == "m" and desktop.pictures() == [path.name],
            4 * SETTLED_SECONDS,
        )
        self.assertTrue(untouched, desktop.pictures())
        desktop.type_text("y own")
        desktop.press("Return")
        self.wait_for_name("my-own.png")
        self.assertEqual((desktop.FOLDER / "my-own.png").read_bytes(), content)

    def test_the_close_button_commits_what_was_typed(self):
        path = self.drop_named()
        content = path.read_bytes()
        self.edit(self.first_row(), "Board Minutes")
        self.press_button("Dismiss")
        desktop.wait_until(self.tray_is_hidden, "the tray is hidden")
        self.assertEqual(self.wait_for_name("board-minutes.png").read_bytes(), content)
        self.assertEqual(len(desktop.pictures()), 1)

    def test_quitting_commits_what_was_typed(self):
        self.drop_named()
        self.edit(self.first_row(), "Board Minutes")
        self.velmora.stop()
        self.assertEqual(desktop.pictures(), ["board-minutes.png"])

    def test_escape_forgets_what_was_typed(self):
        path = self.drop_named()
        self.edit(self.first_row(), "Board Minutes")
        desktop.press("Escape")
        desktop.wait_until(self.tray_is_hidden, "the tray is hidden")
        kept = desktop.stays(lambda: desktop.pictures() == [path.name], SETTLED_SECONDS)
        self.assertTrue(kept, desktop.pictures())

    def test_the_undo_button_takes_the_automatic_name_back(self):
        self.drop_named()
        self.press_button("Undo")
        row = self.velmora.wait_for_row(lambda each: each.status == "Restored", "the outcome")
        self.assertRegex(row.filename, case.FALLBACK)
        self.assertEqual(desktop.pictures(), [row.filename])
        self.assertIsNone(row.button("Undo"))
        once = desktop.stays(lambda: len(self.detected()) == 1, SETTLED_SECONDS)
        self.assertTrue(once, self.velmora.log.own_messages())

    def test_an_undo_whose_old_name_is_taken_changes_nothing(self):
        path = self.drop_named()
        content = path.read_bytes()
        self.edit(self.first_row(), "minutes")
        desktop.press("Return")
        self.wait_for_name("minutes.png")
        path.write_bytes(b"somebody else's")
        self.press_button("Undo")
        self.velmora.wait_for_row(lambda each: each.status == "Could not undo", "the outcome")
        self.assertEqual(path.read_bytes(), b"somebody else's")
        self.assertEqual((desktop.FOLDER / "minutes.png").read_bytes(), content)

    def test_the_trash_button_moves_the_file_to_the_desktops_trash(self):
        path = self.drop_named()
        content = path.read_bytes()
        self.press_button("Move to Trash")
        desktop.wait_until(self.tray_is_hidden, "the tray is hidden")
        self.assertEqual(desktop.pictures(), [])
        trash = pathlib.Path(os.environ["XDG_DATA_HOME"]) / "Trash"
        self.assertEqual((trash / "files" / path.name).read_bytes(), content)
        note = (trash / "info" / f"{path.name}.trashinfo").read_text().splitlines()
        self.assertEqual(note[:2], ["[Trash Info]", f"Path={path}"])


if __name__ == "__main__":
    unittest.main(verbosity=2)
