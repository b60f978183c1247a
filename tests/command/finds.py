#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Finding in what the program has remembered. What it finds is shown with the whole program, by
end_to_end_search."""

import pathlib
import unittest

from command_case import CommandCase


class Finds(CommandCase):
    def environment(self, **changes):
        return super().environment(**{"XDG_DATA_HOME": str(self.home / "data"), **changes})

    def test_nothing_remembered_is_said_and_nothing_is_made(self):
        out, err = self.run_command("--find", "harvest", status=1)
        self.assertEqual(out, b"")
        self.assertIn(b"no text has been remembered yet", err)
        self.assertEqual(len(err.splitlines()), 1)
        self.assertFalse(pathlib.Path(self.home, "data").exists())

    def test_wrong_use_is_refused(self):
        for arguments in (["--find"], ["--find", "--rename", "word"], ["--find", "--text", "word"]):
            _, err = self.run_command(*arguments, status=2)
            self.assertIn(b"find", err)


if __name__ == "__main__":
    unittest.main(verbosity=2)
