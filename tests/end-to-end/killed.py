#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The program is killed in the middle of its work, again and again, and no file is ever lost."""

import configparser
import os
import pathlib
import random
import re
import threading
import unittest
import urllib.parse

import case
import desktop
from pngs import with_comment

KILLS = 100
LONGEST_LIFE_SECONDS = 0.8
LONGEST_PAUSE_SECONDS = 0.08
SANITIZED_SLOWNESS = 3
TITLES = ["Alpine Bakery", "Coastal Castle", "Desert Harbour", "Forest Library"]
TRASH = pathlib.Path(os.environ["XDG_DATA_HOME"]) / "Trash"
MAXIMUM_RECENT = 10
# The page in front, or no application that the program has seen yet.
APPLICATION = "(gazette-|screenshot-)?"
TEXT = "(" + "|".join(title.lower().replace(" ", "-") for title in [case.TITLE, *TITLES]) + ")"


def names_in(folder):
    """Including hidden ones."""
    return sorted(entry.name for entry in folder.iterdir()) if folder.exists() else []


def stored_settings():
    """The preferences as stored on the disk."""
    store = configparser.ConfigParser(interpolation=None)
    store.optionxform = str
    store.read(desktop.SETTINGS)
    return store["General"]


def stored_recent():
    text = stored_settings().get("recentScreenshots", "@Invalid()")
    return [] if text == "@Invalid()" else [pathlib.Path(path) for path in text.split(", ")]


class Ledger:
    """Everything that was ever saved into the folder, and where it may be now."""

    def __init__(self):
        self._written = {}

    def __len__(self):
        return len(self._written)

    def add(self, name, content):
        self._written[content] = name

    def old_name(self, content):
        return self._written[content]

    def kind_of_name(self, content, name):
        """"old", "fallback" or "text"; nothing when the file may not have the name.

        The text may be another file's: a row does not learn of an undo from the menu, and then
        renames the file that now has the name of its own file."""
        old = self._written[content]
        if name == old:
            return "old"
        if re.fullmatch(APPLICATION + r"screen-\d{8}-\d{6}(-\d+)?\.png", name):
            return "fallback"
        return "text" if re.fullmatch(APPLICATION + TEXT + r"(-\d+)?\.png", name) else None

    def contents(self):
        return self._written.keys()

    def old_names(self):
        return list(self._written.values())


class Killed(case.EndToEnd):
    settings = {"trayDuration": "untilDismissed"}

    def setUp(self):
        super().setUp()
        seed = int(os.environ.get("VELMORA_SEED") or random.SystemRandom().randrange(2**32))
        print(f"VELMORA_SEED={seed}", flush=True)
        self.random = random.Random(seed)
        self.ledger = Ledger()
        self.orphans = set()
        self.home_files = names_in(desktop.HOME)
        self.headlines = [self.headline_bytes(title) for title in TITLES]
        self.trash_button = self.learn_trash_button()
        self.velmora.stop()
        self.velmora = desktop.Velmora(case.BUILD, accessible=False)
        self.addCleanup(lambda: self.velmora.stop())
        self.log = desktop.Log()

    def headline_bytes(self, title):
        """A picture of a page with nothing but its title, which is read quickly."""
        path = self.outside / "headline.png"
        self.tools.save_page(title, "", path)
        return path.read_bytes()

    def learn_trash_button(self):
        """Where the lowest row's button is, however many rows there are."""
        path = self.drop_named()
        self.ledger.add(path.name, path.read_bytes())
        return self.velmora.rows()[0].button("Move to Trash")

    def take_screenshot(self):
        picture = self.random.choice(self.headlines)
        name = f"shot-{len(self.ledger):04}.png"
        content = with_comment(picture, name)
        self.ledger.add(name, content)
        (desktop.FOLDER / name).write_bytes(content)
        return content

    def trash_lowest_row(self):
        x, y = map(str, self.trash_button)
        desktop.run("xdotool", "mousemove", x, y, "click", "1")

    def undo(self):
        self.velmora.act("undo")

    def live_and_be_killed(self):
        """Starts the program, keeps it busy, and kills it at a random moment."""
        killed = threading.Event()

        def kill():
            self.velmora.kill()
            killed.set()

        self.velmora.start()
        slowness = SANITIZED_SLOWNESS if self.velmora.is_sanitized else 1
        timer = threading.Timer(self.random.uniform(0, slowness * LONGEST_LIFE_SECONDS), kill)
        timer.start()
        steps = [self.take_screenshot, self.trash_lowest_row, self.undo]
        while not killed.wait(self.random.uniform(0, slowness * LONGEST_PAUSE_SECONDS)):
            self.random.choices(steps, weights=[4, 2, 2])[0]()
        timer.join()

    def check_files(self):
        """Each file is there once, complete, in the folder or the trash. Returns the kinds of the
        names by their place."""
        found = {}
        kinds = []
        for place in (desktop.FOLDER, TRASH / "files"):
            for name in names_in(place):
                path = place / name
                content = path.read_bytes()
                is_whole = content in self.ledger.contents()
                self.assertTrue(is_whole, f"{path}, {len(content)} bytes, was never written so")
                self.assertFalse(content in found, f"{path} is also {found.get(content)}")
                found[content] = path
                original = path if place == desktop.FOLDER else self.noted_path(name)
                kind = self.ledger.kind_of_name(content, original.name)
                self.assertTrue(
                    kind and original.parent == desktop.FOLDER,
                    f"{self.ledger.old_name(content)} is {path}, from {original}",
                )
                kinds.append((place.name, kind))
        lost = self.ledger.contents() - found.keys()
        self.assertEqual([self.ledger.old_name(content) for content in lost], [], "lost")
        return kinds

    @staticmethod
    def noted_path(name):
        """The original path that the trash has recorded for the file."""
        note = configparser.ConfigParser(interpolation=None)
        note.read_string((TRASH / "info" / f"{name}.trashinfo").read_text())
        return pathlib.Path(urllib.parse.unquote(note["Trash Info"]["Path"]))

    def check_leftovers(self):
        """A kill during a move to or from the trash may leave an info file, nothing else."""
        notes = {name.removesuffix(".trashinfo") for name in names_in(TRASH / "info")}
        orphans = notes - set(names_in(TRASH / "files"))
        self.assertLessEqual(len(orphans - self.orphans), 1, orphans)
        self.orphans = orphans
        self.assertEqual(names_in(TRASH), ["files", "info"] if TRASH.exists() else [])
        self.assertEqual(names_in(desktop.HOME), self.home_files)

    def check_settings(self):
        self.assertEqual(stored_settings()["trayDuration"], self.settings["trayDuration"])
        recent = stored_recent()
        self.assertLessEqual(len(recent), MAXIMUM_RECENT)
        self.assertEqual(len(set(recent)), len(recent), recent)
        self.assertEqual({path.parent for path in recent} - {desktop.FOLDER}, set())

    def check_that_it_works(self):
        """A new screenshot gets its name, its row trashes it, and an undo restores it."""
        # A file that arrives while the program first lists the folder counts as old.
        self.velmora.start().close_welcome_window()
        before = set(names_in(desktop.FOLDER))
        content = self.take_screenshot()

        def named():
            new = [name for name in names_in(desktop.FOLDER) if name not in before]
            return [name for name in new if self.ledger.kind_of_name(content, name) == "text"]

        path = desktop.FOLDER / desktop.wait_until(named, "the name", case.NAMING_SECONDS)[0]
        self.trash_lowest_row()
        desktop.wait_until(lambda: not path.exists(), "the file is in the trash")
        self.undo()
        desktop.wait_until(path.exists, "the file is back")
        self.assertEqual(path.read_bytes(), content)

    def undone_names(self):
        """The files that were seen and have their old names again."""
        messages = set(self.log.own_messages())
        paths = [desktop.FOLDER / name for name in self.ledger.old_names()]
        return [path.name for path in paths if path.exists() and f"detected {path}" in messages]

    def test_killed_at_a_hundred_random_moments(self):
        for _ in range(KILLS):
            self.live_and_be_killed()
            kinds = self.check_files()
            self.check_leftovers()
            self.check_settings()
        counts = {kind: kinds.count(kind) for kind in sorted(set(kinds))}
        undone = self.undone_names()
        print(f"{len(self.ledger)} files {counts}, {len(undone)} undone", flush=True)
        for name in ("old", "fallback", "text"):
            self.assertIn((desktop.FOLDER.name, name), counts)
        self.assertGreater(len(names_in(TRASH / "files")), 0)
        self.assertGreater(len(undone), 0)
        self.check_that_it_works()


if __name__ == "__main__":
    unittest.main(verbosity=2)
