# SPDX-License-Identifier: MIT
"""The basis of every end-to-end case: a clean folder, a page in front, the running program."""

import itertools
import os
import pathlib
import re
import shutil
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "world"))

import desktop  # noqa: E402

BUILD = pathlib.Path(os.environ["VELMORA_BUILD"])
TITLE = "Quarterly Budget Review Meeting"
TITLE_NAME = "gazette-quarterly-budget-review-meeting"
PARAGRAPH = "The harvest was better than anybody had hoped, says the treasurer."
FALLBACK = re.compile(r"gazette-screen-\d{8}-\d{6}(-\d+)?\.\w+")
NAMING_SECONDS = 60


class EndToEnd(unittest.TestCase):
    settings = {}

    def setUp(self):
        self.tools = desktop.Tools(BUILD)
        shutil.rmtree(desktop.FOLDER)
        desktop.FOLDER.mkdir()
        desktop.SETTINGS.unlink(missing_ok=True)
        desktop.save_settings(**self.settings)
        desktop.set_file_manager("thunar.desktop")
        self.outside = pathlib.Path(tempfile.mkdtemp(dir=desktop.HOME))
        self.addCleanup(shutil.rmtree, self.outside)
        self.page = self.tools.page(TITLE, PARAGRAPH)
        self.addCleanup(self.page.close)
        self.velmora = desktop.Velmora(BUILD)
        self.addCleanup(self.velmora.stop)
        self.velmora.start().close_welcome_window()
        self._numbers = itertools.count(1)

    def picture_bytes(self, title=TITLE):
        """A picture of a page."""
        path = self.outside / "page.png"
        self.tools.save_page(title, PARAGRAPH, path)
        return path.read_bytes()

    def drop(self, title=TITLE, name=None):
        """Puts a finished picture into the folder, as most tools do, and returns its path."""
        path = desktop.FOLDER / (name or f"Screenshot {next(self._numbers)}.png")
        path.write_bytes(self.picture_bytes(title))
        return path

    def wait_for_name(self, name, seconds=NAMING_SECONDS):
        """Waits until the folder holds the file, and returns its path."""
        path = desktop.FOLDER / name
        desktop.wait_until(path.exists, f"{name} in {desktop.pictures()}", seconds)
        return path

    def wait_for_rows(self, count):
        return desktop.wait_until(
            lambda: (rows := self.velmora.rows()) and len(rows) == count and rows, f"{count} rows"
        )

    def drop_named(self, title=TITLE):
        """Drops a screenshot and waits for its row and its name. Returns the file's path."""
        before = set(desktop.pictures())
        self.drop(title)
        slug = "gazette-" + title.lower().replace(" ", "-")

        def named():
            new = [name for name in desktop.pictures() if name not in before]
            return [name for name in new if name.startswith(slug)]

        name = desktop.wait_until(named, f"a file {slug}", NAMING_SECONDS)[0]
        self.velmora.wait_for_row(lambda row: row.filename == name, f"a row {name}")
        return desktop.FOLDER / name

    def tray_is_hidden(self):
        return self.velmora.tray_window() is None

    def detected(self):
        """The paths that the log says were detected, in order."""
        prefix = "detected "
        messages = self.velmora.log.own_messages()
        return [text[len(prefix):] for text in messages if text.startswith(prefix)]

