#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Two hundred screenshots in five seconds."""

import time
import unittest

import case
import desktop
from pngs import with_comment

COUNT = 200
SECONDS = 5.0
TITLES = [
    f"{first} {second} Evening Walk"
    for first in ("Alpine", "Coastal", "Desert", "Forest", "Garden")
    for second in ("Bakery", "Castle", "Harbour", "Library")
]
WARM_UP = 20
NAMING_SECONDS = 120
MAY_GROW_BYTES = 12 * 1024 * 1024


def slug(title):
    return "gazette-" + title.lower().replace(" ", "-")


def by_text(name):
    return any(name.startswith(slug(title)) for title in TITLES)


class Burst(case.EndToEnd):
    def drop_all(self, pages, prefix, count, seconds):
        """Drops the pages in turn, evenly over the time. Returns each file's bytes by its name."""
        start = time.monotonic()
        dropped = {}
        for number in range(count):
            due = start + seconds * number / count
            desktop.let_pass(due - time.monotonic())
            title, png = pages[number % len(pages)]
            name = f"{prefix} {number:03}.png"
            dropped[name] = (title, with_comment(png, name))
            (desktop.FOLDER / name).write_bytes(dropped[name][1])
        return dropped

    def wait_until_all_are_named(self, count):
        """No file has its original name any more, and the remaining rows show the names that come
        from the text. A file whose row was pushed out before its text was read keeps the first
        name that it got."""

        def all_named():
            names = desktop.pictures()
            rows = self.velmora.rows()
            return (
                len(names) == count
                and all(case.FALLBACK.fullmatch(name) or by_text(name) for name in names)
                and len(rows) == 3
                and all(by_text(row.filename) for row in rows)
            )

        desktop.wait_until(all_named, "every file has its name", NAMING_SECONDS)

    def test_two_hundred_screenshots_in_five_seconds(self):
        pages = [(title, self.picture_bytes(title)) for title in TITLES]
        self.drop_all(pages, "First", WARM_UP, 2)
        self.wait_until_all_are_named(WARM_UP)
        memory = self.velmora.private_bytes()
        descriptors = self.velmora.descriptor_count()

        dropped = self.drop_all(pages, "Burst", COUNT, SECONDS)
        self.wait_until_all_are_named(WARM_UP + COUNT)

        detected = self.detected()
        for name in dropped:
            self.assertEqual(detected.count(str(desktop.FOLDER / name)), 1, name)
        self.assertEqual(len(detected), WARM_UP + COUNT)
        by_content = {(desktop.FOLDER / name).read_bytes(): name for name in desktop.pictures()}
        self.assertEqual(len(by_content), WARM_UP + COUNT)
        for title, content in dropped.values():
            name = by_content[content]
            self.assertTrue(name.startswith(slug(title)) or case.FALLBACK.fullmatch(name), name)
        if not self.velmora.is_sanitized:
            desktop.wait_until(
                lambda: self.velmora.private_bytes() < memory + MAY_GROW_BYTES,
                f"memory back to {memory} bytes",
                30,
            )
        desktop.wait_until(
            lambda: self.velmora.descriptor_count() <= descriptors, "descriptors closed", 30
        )


if __name__ == "__main__":
    unittest.main(verbosity=2)
