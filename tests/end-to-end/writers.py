#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Screenshots written the way real tools write them: each gets its row at once, and its name."""

import os
import time
import unittest

import case
import desktop

SETTLED_SECONDS = 1.0


class Writers(case.EndToEnd):
    def expect_named_once(self, path, name):
        """The file at the path is reported once, and gets its name from its text."""
        target = self.wait_for_name(name)
        self.velmora.wait_for_row(
            lambda row: row.filename == name and row.status == "Renamed automatically",
            "the row shows the name",
        )
        self.assertEqual(desktop.pictures(), [name])
        once = desktop.stays(lambda: self.detected() == [str(path)], SETTLED_SECONDS)
        self.assertTrue(once, self.velmora.log.own_messages())
        self.assertEqual(len(self.velmora.rows()), 1)
        return target

    def test_a_picture_by_maim(self):
        path = desktop.FOLDER / "maim.png"
        desktop.run("maim", "-i", str(self.page.window), str(path))
        self.expect_named_once(path, f"{case.TITLE_NAME}.png")

    def test_a_picture_by_scrot(self):
        path = desktop.FOLDER / "2026-01-15-093012_960x620_scrot.png"
        desktop.run("scrot", "--focused", str(path))
        self.expect_named_once(path, f"{case.TITLE_NAME}.png")

    def test_a_picture_by_import(self):
        """ImageMagick creates the file, closes it, and opens it again once it has the picture."""
        path = desktop.FOLDER / "import.png"
        desktop.run("import", "-window", str(self.page.window), str(path))
        target = self.expect_named_once(path, f"{case.TITLE_NAME}.png")
        self.assertTrue(target.read_bytes().endswith(b"IEND\xaeB`\x82"))

    def write_in_parts(self, path, parts, pause):
        """Opens the file again for each part."""
        for number, part in enumerate(parts):
            if number > 0:
                desktop.let_pass(pause)
            with path.open("ab") as file:
                file.write(part)

    def test_a_writer_that_opens_the_file_again_after_a_moment(self):
        content = self.picture_bytes()
        half = len(content) // 2
        for number, parts in enumerate(
            ([b"", content], [content[:half], content[half:]], [b"", content[:half], content[half:]])
        ):
            with self.subTest(number=number):
                path = desktop.FOLDER / f"again {number}.png"
                self.write_in_parts(path, parts, 0.1)
                suffix = f"-{number + 1}" if number else ""
                target = self.wait_for_name(f"{case.TITLE_NAME}{suffix}.png")
                self.assertEqual(target.read_bytes(), content)
                self.assertEqual(len(desktop.pictures()), number + 1)
                self.assertEqual(self.detected().count(str(path)), 1)

    def test_a_jpeg_keeps_its_extension_in_lower_case(self):
        desktop.run("scrot", "--focused", "--quality", "95", str(self.outside / "shot.jpg"))
        path = desktop.FOLDER / "Shot.JPG"
        os.rename(self.outside / "shot.jpg", path)
        self.expect_named_once(path, f"{case.TITLE_NAME}.jpg")

    def test_a_writer_that_fills_the_file_slowly(self):
        content = self.picture_bytes()
        path = desktop.FOLDER / "slow.png"
        chunk = 512
        with path.open("wb", buffering=0) as file:
            half = len(content) // 2
            for start in range(0, half, chunk):
                file.write(content[start:min(start + chunk, half)])
            row = self.velmora.wait_for_row(lambda row: True, "a row for the half-written file")
            self.assertRegex(row.filename, case.FALLBACK)
            unread = desktop.stays(lambda: desktop.pictures() == [path.name], SETTLED_SECONDS)
            self.assertTrue(unread, "nobody renames or reads half a picture")
            for start in range(half, len(content), chunk):
                file.write(content[start:start + chunk])
        target = self.expect_named_once(path, f"{case.TITLE_NAME}.png")
        self.assertEqual(target.read_bytes(), content)

    def test_a_writer_that_keeps_the_file_open_when_it_has_written_it(self):
        content = self.picture_bytes()
        fastest = 10.0
        for attempt in range(5):
            name = f"{case.TITLE_NAME}{'' if attempt == 0 else f'-{attempt + 1}'}.png"
            target = desktop.FOLDER / name
            with (desktop.FOLDER / f"open {attempt}.png").open("wb", buffering=0) as file:
                file.write(content)
                start = time.monotonic()
                desktop.wait_until(target.exists, "the name", 4)
                fastest = min(fastest, time.monotonic() - start)
        if not self.velmora.is_sanitized:
            self.assertLess(fastest, 0.4)
        self.assertEqual(len(self.detected()), 5)

    def test_a_writer_that_renames_a_temporary_file_in_the_folder(self):
        path = desktop.FOLDER / "renamed.png"
        hidden = desktop.FOLDER / ".renamed.png.tmp"
        hidden.write_bytes(self.picture_bytes())
        os.rename(hidden, path)
        self.expect_named_once(path, f"{case.TITLE_NAME}.png")

    def test_a_writer_that_moves_the_file_into_the_folder(self):
        path = desktop.FOLDER / "moved.png"
        outside = self.outside / "moved.png"
        outside.write_bytes(self.picture_bytes())
        os.rename(outside, path)
        self.expect_named_once(path, f"{case.TITLE_NAME}.png")

    def test_a_writer_that_links_an_unnamed_file(self):
        path = desktop.FOLDER / "linked.png"
        folder = os.open(desktop.FOLDER, os.O_PATH)
        self.addCleanup(os.close, folder)
        descriptor = os.open(desktop.FOLDER, os.O_TMPFILE | os.O_WRONLY, 0o644)
        try:
            os.write(descriptor, self.picture_bytes())
            # With a folder's descriptor, the link behind the name in /proc is followed.
            os.link(f"/proc/self/fd/{descriptor}", path.name, src_dir_fd=folder, dst_dir_fd=folder)
        finally:
            os.close(descriptor)
        self.expect_named_once(path, f"{case.TITLE_NAME}.png")

    def test_a_second_picture_of_the_same_page_gets_a_number(self):
        self.drop_named()
        second = self.drop()
        self.wait_for_name(f"{case.TITLE_NAME}-2.png")
        self.assertEqual(len(desktop.pictures()), 2)
        self.assertEqual(self.detected()[-1], str(second))

    def test_a_file_that_is_no_picture_is_left_alone(self):
        others = ["notes.txt", "shot.tif", "page.gif"]
        for name in [*others, ".hidden.png"]:
            (desktop.FOLDER / name).write_bytes(self.picture_bytes())
        self.drop_named()
        self.assertEqual(len(self.detected()), 1)
        self.assertEqual(desktop.pictures(), sorted([*others, f"{case.TITLE_NAME}.png"]))

    def test_a_picture_that_cannot_be_decoded_still_gets_its_row(self):
        path = desktop.FOLDER / "broken.png"
        path.write_bytes(b"\x89PNG\r\n\x1a\n and then nothing that makes sense")
        self.velmora.wait_for_row(lambda row: row.filename == "gazette.png", "the row", 30)
        self.assertEqual(desktop.pictures(), ["gazette.png"])
        self.assertEqual(self.detected(), [str(path)])


if __name__ == "__main__":
    unittest.main(verbosity=2)
