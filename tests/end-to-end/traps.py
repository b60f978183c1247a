#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Something else is in the place of the program's own files: the program starts all the same,
works, reads nothing endless, and loses nothing of what is there."""

import os
import pathlib
import re
import stat
import time
import unittest

import case
import desktop

CONFIG = pathlib.Path(os.environ["XDG_CONFIG_HOME"])
DOMAIN = CONFIG / "velmora" / "com.apple.screencapture.conf"
ENTRY = CONFIG / "autostart" / "app.velmora.Velmora.desktop"
USER_FOLDERS = CONFIG / "user-dirs.dirs"
# Far longer than a start takes on a busy machine; a program that hangs never gets there.
LONGEST_START_SECONDS = 10
# Without the shared part of libraries; reading a file of 87 MB whole took 3 GB.
MOST_PRIVATE_BYTES = 150_000_000


def lock_of(path):
    return path.with_name(path.name + ".lock")


def pipe(path):
    os.mkfifo(path)


def folder(path):
    path.mkdir()
    (path / "inside").write_text("kept")


def endless_link(path):
    path.symlink_to("/dev/zero")


def huge_file(path):
    with path.open("w") as file:
        file.write("[General]\n")
        for number in range(87):
            file.write(f"key{number}=value\n" + "k=v\n" * 250_000)


def foreign_lock(path):
    path.write_text("4711\nvelmora\nanother-host\n\n\n")


TRAPS = [
    *[
        (trap, path)
        for path in (desktop.SETTINGS, DOMAIN)
        for trap in (pipe, folder, endless_link, huge_file)
    ],
    *[
        (trap, lock_of(path))
        for path in (desktop.SETTINGS, DOMAIN)
        for trap in (pipe, folder, endless_link, foreign_lock)
    ],
    *[(trap, path) for path in (ENTRY, USER_FOLDERS) for trap in (pipe, folder, endless_link)],
]


def everything():
    """The number, the kind and the size of everything in the configuration folder."""
    found = {}
    for parent, folders, files in os.walk(CONFIG):
        for name in folders + files:
            status = os.lstat(os.path.join(parent, name))
            found[status.st_ino] = (stat.S_IFMT(status.st_mode), status.st_size)
    return found


def mode_of(path):
    return stat.S_IMODE(os.lstat(path).st_mode)


class Traps(unittest.TestCase):
    def setUp(self):
        self.tools = desktop.Tools(case.BUILD)
        desktop.run("rm", "-rf", CONFIG, desktop.FOLDER)
        desktop.FOLDER.mkdir()
        (CONFIG / "velmora").mkdir(parents=True)
        ENTRY.parent.mkdir()
        self.velmora = desktop.Velmora(case.BUILD)
        self.addCleanup(self.velmora.stop)

    def start_in_time(self):
        begin = time.monotonic()
        self.velmora.start(seconds=LONGEST_START_SECONDS)
        print(f"  {1000 * (time.monotonic() - begin):.0f} ms", flush=True)

    def most_bytes(self):
        """The peak of the resident memory."""
        text = pathlib.Path(f"/proc/{self.velmora.pid}/status").read_text()
        return 1024 * int(re.search(r"VmHWM:\s+(\d+) kB", text)[1])

    def expect_that_it_works(self):
        """The welcome window, which reads the autostart entry when it is built, is shown; a
        screenshot gets its row; and the recent list is stored."""
        self.velmora.close_welcome_window()
        path = desktop.FOLDER / "Screenshot.png"
        self.tools.save_page("Traps", "All is well.", path)
        desktop.wait_until(self.velmora.rows, "a row")
        desktop.wait_until(self.is_recent_list_stored, "the recent list is stored")

    @staticmethod
    def is_recent_list_stored():
        is_file = desktop.SETTINGS.is_file() and not desktop.SETTINGS.is_symlink()
        return is_file and b"\nrecentScreenshots=" in desktop.SETTINGS.read_bytes()

    def expect_trap_to_do_nothing(self, trap, path):
        trap(path)
        before = everything()
        self.start_in_time()
        self.expect_that_it_works()
        if not self.velmora.is_sanitized:
            self.assertLess(self.velmora.private_bytes(), MOST_PRIVATE_BYTES)
            self.assertLess(self.most_bytes(), 2 * MOST_PRIVATE_BYTES)
        self.assertEqual(mode_of(desktop.SETTINGS), 0o600)
        self.assertEqual(mode_of(desktop.SETTINGS.parent), 0o700)
        self.velmora.stop()
        self.assertEqual(self.velmora.exit_code, 0)
        after = everything()
        self.assertEqual([before[key] for key in before if after.get(key) != before[key]], [])


def add_test(trap, path):
    def test(self):
        self.expect_trap_to_do_nothing(trap, path)

    name = re.sub(r"\W", "_", path.name)
    setattr(Traps, f"test_{trap.__name__}_for_{name}", test)


for each_trap, each_path in TRAPS:
    add_test(each_trap, each_path)


if __name__ == "__main__":
    unittest.main(verbosity=2)
