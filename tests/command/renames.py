#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The command gives files their names, and takes that back."""

import json
import os
import pathlib
import stat
import sys
import unittest

from command_case import BUILD, PAGES, CommandCase, digests, tool_name

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "world"))

import desktop  # noqa: E402

MANY = 200


class Renames(CommandCase):
    def rename(self, *arguments, **options):
        return self.run_command("--rename", *arguments or ["."], **options)

    def undo(self, *arguments, **options):
        return self.run_command("--undo", *arguments, **options)

    def test_two_hundred_old_screenshots_are_named_and_taken_back(self):
        for number in range(MANY):
            path = self.put(tool_name(number), number)
            # The files differ, so that each can be told from all others.
            with open(path, "ab") as file:
                file.write(b"%d" % number)
        before = digests(self.folder)
        self.assertEqual(len(set(before.values())), MANY)
        times = {name: os.stat(self.folder / os.fsdecode(name)).st_mtime_ns for name in before}

        out, err = self.rename()
        told = dict(line.split("\t") for line in out.decode().splitlines())
        after = digests(self.folder)
        self.assertEqual({f"./{os.fsdecode(name)}" for name in after}, set(told.values()))
        for name, value in before.items():
            self.assertEqual(after[os.fsencode(pathlib.Path(told[f"./{os.fsdecode(name)}"]).name)],
                             value)
        numbered = {page.replace(".png", f"-{counter}.png")
                    for page in PAGES for counter in range(2, MANY // len(PAGES) + 1)}
        self.assertEqual({os.fsdecode(name) for name in after}, numbered | set(PAGES))
        self.assertEqual(err, b"")

        out, _ = self.undo()
        self.assertEqual(len(out.splitlines()), MANY)
        self.assertEqual(digests(self.folder), before)
        self.assertEqual({name: os.stat(self.folder / os.fsdecode(name)).st_mtime_ns
                          for name in before}, times)
        self.assertEqual(self.journals(), [])

    def test_the_second_run_finds_nothing_to_do(self):
        self.put(tool_name(1))
        self.rename()
        out, err = self.rename()
        self.assertEqual(out, b"")
        self.assertIn(b"skipped", err)
        self.assertEqual(len(self.journals()), 1)

    def test_a_name_that_fits_already_stays(self):
        names = ["quarterly-budget-meeting.png", "quarterly-budget-meeting-2.png"]
        for name in names:
            self.put(name)
        out, _ = self.rename("--all", *names)
        self.assertEqual(out.decode().splitlines(), [f"{name}\t{name}" for name in names])
        self.assertEqual(self.names(), sorted(names))
        self.assertEqual(self.journals(), [])

    def test_a_name_that_fits_stays_also_when_another_picture_wanted_it(self):
        fitting = ["quarterly-budget-meeting.png", "quarterly-budget-meeting-2.png"]
        for name in [tool_name(1), *fitting]:
            self.put(name, 0)
        out = self.lines("--all", "--rename", tool_name(1), *fitting)
        self.assertEqual([new for _, new in out], ["quarterly-budget-meeting-3.png", *fitting])

    def test_a_name_that_becomes_free_is_given_again(self):
        for number in range(3):
            self.put(tool_name(number), 0)
        self.put("quarterly-budget-meeting-2.png", 1)
        order = [tool_name(0), tool_name(1), "quarterly-budget-meeting-2.png", tool_name(2)]
        wanted = ["quarterly-budget-meeting.png", "quarterly-budget-meeting-3.png",
                  "alpine-bakery-orders.png", "quarterly-budget-meeting-2.png"]
        for arguments in (["--all"], ["--all", "--rename"]):
            out = self.lines(*arguments, *order)
            self.assertEqual([new for _, new in out], wanted)

    def test_each_rename_is_on_the_disk_before_it_happens(self):
        for number in range(3):
            self.put(tool_name(number), number)
        report = self.home / "calls"
        self.rename(env=self.environment(**desktop.slow_disk(
            BUILD, [self.home], 1, ["none"], report)))
        calls = [line.split(" ", 1) for line in report.read_text().splitlines()]
        steps = [name for name, path in calls if name in ("pwrite", "fsync", "renameat2")
                 and (path.endswith(".journal") or path.startswith(str(self.folder)))]
        self.assertEqual(steps, ["pwrite", "fsync", "renameat2"] * 3)

    def test_the_last_run_is_taken_back_first(self):
        self.put(tool_name(1), 1)
        self.rename()
        self.put(tool_name(2), 2)
        self.rename()
        self.undo()
        self.assertEqual(self.names(), [tool_name(2), "alpine-bakery-orders.png"])
        self.undo()
        self.assertEqual(self.names(), [tool_name(1), tool_name(2)])
        out, err = self.undo()
        self.assertEqual(out, b"")
        self.assertIn(b"nothing to undo", err)

    def test_undo_never_overwrites_who_took_the_old_name(self):
        self.put(tool_name(1), 1)
        self.rename()
        self.put(tool_name(1), 2)
        before = set(digests(self.folder).values())
        out, _ = self.undo("-0")
        back = tool_name(1).replace(".png", "-2.png")
        self.assertEqual(out.split(b"\0")[1], os.fsencode(self.folder / back))
        self.assertEqual(self.names(), sorted([tool_name(1), back]))
        self.assertEqual(set(digests(self.folder).values()), before)

    def test_undo_leaves_another_file_of_that_name_alone(self):
        self.put(tool_name(1), 1)
        self.rename()
        renamed = self.folder / "alpine-bakery-orders.png"
        renamed.unlink()
        renamed.write_bytes(b"another file")
        out, err = self.undo(status=1)
        self.assertEqual(out, b"")
        self.assertIn(b"alpine-bakery-orders.png: is no longer there", err)
        self.assertEqual(renamed.read_bytes(), b"another file")
        self.assertEqual(self.journals(), [])

    def test_undo_takes_back_a_file_that_was_changed_since(self):
        self.put(tool_name(1), 1)
        self.rename()
        with open(self.folder / "alpine-bakery-orders.png", "ab") as file:
            file.write(b"a note")
        self.undo()
        self.assertEqual(self.names(), [tool_name(1)])

    def test_the_journal_is_the_users_alone_and_is_where_it_should_be(self):
        self.put(tool_name(1))
        self.rename()
        [journal] = self.journals()
        self.assertEqual(stat.S_IMODE(journal.stat().st_mode), 0o600)
        self.assertEqual(stat.S_IMODE(journal.parent.stat().st_mode), 0o700)

    def test_without_a_state_home_the_journal_is_in_its_default_place(self):
        self.put(tool_name(1))
        for value in (None, "relative"):
            variables = self.environment(XDG_STATE_HOME=value)
            self.rename(env=variables)
            self.assertEqual(len(list((self.home / ".local/state/velmora").glob("renames-*"))), 1)
            self.undo(env=variables)
            self.assertEqual(self.names(), [tool_name(1)])

    def test_names_of_any_bytes_and_any_length_come_back(self):
        names = [b"caf\xe9.png", b"a\nb\tc.png", b"%41.png", "ä".encode() * 125 + b"1.png",
                 b"x" * 251 + b".png"]
        for number, name in enumerate(names):
            self.put(name, number)
        before = digests(self.folder)
        self.rename("--all", ".")
        self.assertFalse(set(before) & set(digests(self.folder)))
        out, _ = self.undo("--json")
        self.assertTrue(all(json.loads(line)["renamed"] for line in out.splitlines()))
        self.assertEqual(digests(self.folder), before)

    def test_relative_names_are_taken_back_from_anywhere(self):
        self.put(tool_name(1))
        self.rename(tool_name(1))
        self.undo(cwd="/")
        self.assertEqual(self.names(), [tool_name(1)])

    def test_a_link_is_renamed_and_its_target_is_not(self):
        target = self.home / "target.png"
        target.write_bytes(self.page().read_bytes())
        (self.folder / tool_name(1)).symlink_to(target)
        self.rename()
        self.assertEqual(self.names(), ["quarterly-budget-meeting.png"])
        self.assertTrue((self.folder / "quarterly-budget-meeting.png").is_symlink())
        self.undo()
        self.assertEqual(self.names(), [tool_name(1)])
        self.assertTrue(target.exists())

    def test_old_journals_go_and_the_newest_stay(self):
        folder = self.state / "velmora"
        folder.mkdir(parents=True)
        for number in range(1, 151):
            (folder / f"renames-{number:06}.journal").write_text("1\t2\t3\t4\t5\t/old\t/new\n")
        self.put(tool_name(1))
        self.rename()
        self.assertEqual([path.name for path in self.journals()],
                         [f"renames-{number:06}.journal" for number in range(52, 152)])


if __name__ == "__main__":
    unittest.main(verbosity=2)
