#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Another process interferes with the files while the program works on them: whatever it does, and
whenever, every picture is there exactly once in the end."""

import ctypes
import os
import pathlib
import random
import time
import unittest

import case
import desktop
from pngs import with_comment

SEED = 20240229
INTERFERENCES = 500
LONGEST_PAUSE_SECONDS = 0.04
QUIET_SECONDS = 1.0
TITLES = ["Alpine Bakery", "Coastal Castle", "Desert Harbour", "Forest Library"]
TRASH = pathlib.Path(os.environ["XDG_DATA_HOME"]) / "Trash"
HOME_TRASH = desktop.HOME / ".Trash"

AT_FDCWD = -100
RENAME_NOREPLACE = 1
RENAME_EXCHANGE = 2


def rename(source, target, flags):
    """Whether the file has been renamed, or exchanged, in one step."""
    libc = ctypes.CDLL(None, use_errno=True)
    paths = (os.fsencode(source), os.fsencode(target))
    return libc.renameat2(AT_FDCWD, paths[0], AT_FDCWD, paths[1], flags) == 0


def files_in(folder):
    """Including hidden ones."""
    return sorted(entry for entry in folder.iterdir()) if folder.exists() else []


class Interferences(case.EndToEnd):
    settings = {"trayDuration": "untilDismissed", "copyBehavior": "imageAndFile"}

    def setUp(self):
        super().setUp()
        seed = int(os.environ.get("VELMORA_SEED", SEED))
        print(f"VELMORA_SEED={seed}", flush=True)
        self.random = random.Random(seed)
        self.number = 0
        self.contents = {}
        self.done = {}
        self.headlines = [self.headline_bytes(title) for title in TITLES]
        path = self.drop_named()
        self.contents[path.read_bytes()] = path.name
        row = self.velmora.rows()[0]
        self.trash_button = row.button("Move to Trash")
        self.undo_button = row.button("Undo")

    def headline_bytes(self, title):
        """A picture of a page with nothing but its title, which is read quickly."""
        path = self.outside / "headline.png"
        self.tools.save_page(title, "", path)
        return path.read_bytes()

    def new_content(self, name):
        """No two are equal."""
        self.number += 1
        content = with_comment(self.random.choice(self.headlines), f"{self.number} {name}")
        self.contents[content] = f"{self.number} {name}"
        return content

    def outside_file(self, content, is_old=False):
        path = self.outside / f"own {self.number}"
        path.write_bytes(content)
        if is_old:
            os.utime(path, (0, 0))
        return path

    def any_file(self):
        paths = [path for path in files_in(desktop.FOLDER) if not path.name.startswith(".")]
        return self.random.choice(paths) if paths else None

    # What can happen. Each returns whether it found what it needs.

    def take_screenshot(self):
        name = f"shot-{self.number:04}.png"
        return self.add_exclusively(name, self.new_content(name), is_old=False)

    def add_exclusively(self, name, content, is_old):
        outside = self.outside_file(content, is_old)
        if rename(outside, desktop.FOLDER / name, RENAME_NOREPLACE):
            return True
        del self.contents[content]
        return False

    def rename_file(self):
        path = self.any_file()
        self.number += 1
        return path and rename(
            path, desktop.FOLDER / f"elsewhere-{self.number:04}.png", RENAME_NOREPLACE
        )

    def delete_file(self):
        path = self.any_file()
        taken = self.outside / "taken"
        if not path or not rename(path, taken, RENAME_NOREPLACE):
            return False
        del self.contents[taken.read_bytes()]
        taken.unlink()
        return True

    def replace_file(self):
        """In one step, like a program that saves safely."""
        path = self.any_file()
        content = self.new_content("replacement")
        outside = self.outside_file(content)
        if not path or not rename(outside, path, RENAME_EXCHANGE):
            del self.contents[content]
            return False
        del self.contents[outside.read_bytes()]
        outside.unlink()
        return True

    def truncate_file(self):
        path = self.any_file()
        try:
            with open(os.open(path, os.O_RDWR), "r+b") as file:
                del self.contents[file.read()]
                file.seek(0)
                file.truncate()
                self.number += 1
                content = f"truncated {self.number}".encode()
                self.contents[content] = content.decode()
                file.write(content)
            return True
        except (FileNotFoundError, TypeError):
            return False

    def touch_file(self):
        path = self.any_file()
        try:
            os.utime(path)
            return True
        except (FileNotFoundError, TypeError):
            return False

    def change_mode(self):
        path = self.any_file()
        try:
            os.chmod(path, self.random.choice((0o400, 0o600, 0o644)))
            return True
        except (FileNotFoundError, TypeError):
            return False

    def occupy_destination(self):
        """The next name that comes from the text, or the name that an undo would restore."""
        slug = "gazette-" + self.random.choice(TITLES).lower().replace(" ", "-")
        name = self.random.choice(
            [f"{slug}.png", f"{slug}-2.png", f"shot-{self.random.randrange(self.number + 1):04}.png"]
        )
        return self.add_exclusively(name, self.new_content("occupant"), is_old=True)

    def undo(self):
        return self.velmora.act("undo")

    def click(self, button):
        desktop.run("xdotool", "mousemove", *map(str, button), "click", "1")
        return True

    def undo_in_row(self):
        return self.click(self.undo_button)

    def trash(self):
        return self.click(self.trash_button)

    def interfere(self):
        kinds = {
            self.take_screenshot: 8,
            self.rename_file: 3,
            self.delete_file: 1,
            self.replace_file: 3,
            self.truncate_file: 1,
            self.touch_file: 2,
            self.change_mode: 2,
            self.occupy_destination: 4,
            self.undo: 4,
            self.undo_in_row: 2,
            self.trash: 4,
        }
        kind = self.random.choices(list(kinds), weights=list(kinds.values()))[0]
        if not kind():
            return False
        self.done[kind.__name__] = self.done.get(kind.__name__, 0) + 1
        return True

    def everything(self):
        places = [desktop.FOLDER, TRASH / "files", HOME_TRASH]
        return [path for place in places for path in files_in(place)]

    def wait_for_quiet(self):
        def is_quiet():
            before = self.everything()
            return desktop.stays(lambda: self.everything() == before, QUIET_SECONDS)

        desktop.wait_until(is_quiet, "nothing happens any more", 60)

    def check_contents(self):
        found = {}
        for path in self.everything():
            content = path.read_bytes()
            self.assertIn(content, self.contents, f"{path} was never written so")
            self.assertNotIn(content, found, f"{path} is also {found.get(content)}")
            found[content] = path
        lost = [name for content, name in self.contents.items() if content not in found]
        self.assertEqual(lost, [], "lost")

    def test_five_hundred_interferences_lose_nothing(self):
        start = time.monotonic()
        remaining = INTERFERENCES
        while remaining > 0:
            remaining -= self.interfere()
            pause = self.random.uniform(0, LONGEST_PAUSE_SECONDS)
            desktop.let_pass(pause)
        self.assertTrue(self.velmora.is_running)
        self.wait_for_quiet()
        self.check_contents()
        print(f"{len(self.contents)} files, {self.done}, {time.monotonic() - start:.1f} s")
        self.assertEqual(len(self.done), 11, self.done)
        # It still works.
        self.assertTrue(self.drop_named("Evening Harbour Walk").exists())


if __name__ == "__main__":
    unittest.main(verbosity=2)
