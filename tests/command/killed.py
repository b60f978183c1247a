#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The command is killed in the middle of renaming and of taking back, again and again, and no
picture is ever lost.

Variables for a longer run: VELMORA_PICTURES, the number of pictures, and VELMORA_KILLS."""

import os
import pathlib
import random
import subprocess
import sys
import unittest

from command_case import BUILD, CommandCase, digests, tool_name

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "world"))

import desktop  # noqa: E402

KILLS = int(os.environ.get("VELMORA_KILLS", 100))
PICTURES = int(os.environ.get("VELMORA_PICTURES", 12))
# Each step takes so long that most kills meet one.
MILLISECONDS = 2
STEPS = ("pwrite", "fsync", "renameat2", "unlink")


class Killed(CommandCase):
    def test_killed_at_any_moment_no_picture_is_lost(self):
        seed = random.randrange(1_000_000)
        dice = random.Random(seed)
        print(f"seed {seed}", flush=True)
        for number in range(PICTURES):
            with open(self.put(tool_name(number), number), "ab") as file:
                file.write(b"%d" % number)
        before = digests(self.folder)
        hashes = sorted(before.values())
        killed = partly = 0
        while killed < KILLS:
            todo = sum(name.startswith("Screenshot") for name in self.names())
            renames = todo == PICTURES or todo > 1 and dice.random() < 0.4
            steps = 3 * todo if renames else PICTURES - todo
            killed += self.dies(dice, steps, *(("--rename", ".") if renames else ("--undo",)))
            now = digests(self.folder)
            self.assertEqual(sorted(now.values()), hashes, f"seed {seed}, kill {killed}")
            partly += 0 < len(set(now) - set(before)) < PICTURES
        # It was killed at moments that matter.
        self.assertGreater(partly, KILLS // 4)
        while self.journals():
            self.run_command("--undo")
        self.assertEqual(digests(self.folder), before, f"seed {seed}")

    def dies(self, dice, steps, *arguments):
        """Whether the command was killed before it came to its end: at any moment of so many steps
        after the first result or, one time in five, of the time before."""
        slow = desktop.slow_disk(BUILD, [self.folder, self.state], MILLISECONDS, STEPS)
        process = self.start(*arguments, stderr=subprocess.DEVNULL, env=self.environment(**slow))
        if dice.random() < 0.8:
            os.read(process.stdout.fileno(), 1)
        try:
            process.wait(timeout=dice.uniform(0, steps * MILLISECONDS / 1000))
        except subprocess.TimeoutExpired:
            pass
        process.kill()
        process.communicate()
        return process.returncode < 0


if __name__ == "__main__":
    unittest.main(verbosity=2)
