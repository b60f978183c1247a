#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What can't be read, written or understood is said in one clear line, and costs nothing else."""

import os
import resource
import shutil
import signal
import subprocess
import unittest

from command_case import COMMAND, CommandCase, digests, tool_name

NOBODY = 65534


class Failures(CommandCase):
    def as_nobody(self):
        """Options that start the command as a user who may not read and write everywhere."""
        if os.geteuid() != 0:
            return {}
        for path in (self.home, self.folder, *self.folder.iterdir()):
            os.chown(path, NOBODY, NOBODY)
        # A copy: the build may lie where nobody else may look.
        command = shutil.copy(COMMAND, self.home / "velmora-name")
        return {"executable": command, "user": NOBODY, "group": NOBODY, "extra_groups": []}

    def test_wrong_use_is_told_from_failure(self):
        for arguments in ([], ["--unknown"], ["--app"], ["--json", "-0", "."], ["--undo", "."],
                          ["--undo", "--rename"], ["--text", "--rename", "."],
                          ["--text", "--app", "x", "."]):
            out, err = self.run_command(*arguments, status=2)
            self.assertEqual(out, b"")
            self.assertRegex(err, rb"^velmora-name: .*\nTry 'velmora-name --help'.\n$")

    def test_what_is_no_picture_is_said_and_the_others_are_named(self):
        self.put(tool_name(1), 1)
        (self.folder / tool_name(2)).write_bytes(b"no picture at all")
        (self.folder / tool_name(3)).write_bytes(self.page().read_bytes()[:2000])
        (self.folder / tool_name(4)).write_bytes(b"")
        os.mkfifo(self.folder / tool_name(5))
        self.put(tool_name(6), 2)
        out, err = self.run_command("--rename", ".", "gone", status=1)
        self.assertEqual([line.split("\t")[1] for line in out.decode().splitlines()],
                         ["./alpine-bakery-orders.png", "./coastal-castle-tour.png"])
        self.assertEqual(err.decode().splitlines(), [
            "velmora-name: gone: No such file or directory",
            *(f"velmora-name: ./{tool_name(number)}: is not a readable picture"
              for number in (2, 3, 4)),
            f"velmora-name: ./{tool_name(5)}: is not a regular file"])
        self.run_command("--undo")
        self.assertEqual(len(self.names()), 6)
        self.assertTrue(all(name.startswith("Screenshot") for name in self.names()))

    def test_what_may_not_be_read_is_said(self):
        self.put(tool_name(1), 1)
        self.put(tool_name(2), 2)
        (self.folder / tool_name(1)).chmod(0)
        closed = self.folder / "closed"
        closed.mkdir()
        closed.chmod(0)
        out, err = self.run_command("--rename", ".", "closed", status=1, **self.as_nobody())
        self.assertEqual(out.decode(), f"./{tool_name(2)}\t./coastal-castle-tour.png\n")
        self.assertEqual(err.decode(), "velmora-name: closed: Permission denied\n"
                         f"velmora-name: ./{tool_name(1)}: Permission denied\n")

    def test_a_folder_that_may_not_be_changed_stays_as_it_is(self):
        self.put(tool_name(1), 1)
        self.put(tool_name(2), 2)
        options = self.as_nobody()
        self.folder.chmod(0o500)
        before = digests(self.folder)
        out, err = self.run_command("--rename", ".", status=1, **options)
        self.assertEqual(out, b"")
        self.assertEqual(err.decode().splitlines(),
                         [f"velmora-name: ./{tool_name(number)}: can't be renamed: "
                          "Permission denied" for number in (1, 2)])
        self.assertEqual(digests(self.folder), before)
        # Nothing happened, and nothing is left to be taken back.
        _, err = self.run_command("--undo", **options)
        self.assertEqual(err, b"")
        self.assertEqual(digests(self.folder), before)

    def test_what_could_not_be_taken_back_is_tried_again(self):
        self.put(tool_name(1), 1)
        options = self.as_nobody()
        self.run_command("--rename", ".", **options)
        self.folder.chmod(0o500)
        _, err = self.run_command("--undo", status=1, **options)
        self.assertIn(b"can't be renamed: Permission denied", err)
        self.folder.chmod(0o700)
        self.run_command("--undo", **options)
        self.assertEqual(self.names(), [tool_name(1)])

    def test_without_room_for_the_journal_nothing_is_renamed(self):
        for number in range(5):
            self.put(tool_name(number), number)
        before = digests(self.folder)
        for bytes in (0, 100):
            # A file may grow to this size, as on a disk with this much room.
            _, err = self.run_command("--rename", ".", status=1,
                                      preexec_fn=lambda: full_at(bytes))
            self.assertIn(b"the journal can't be written, so no more files are renamed: ", err)
            self.assertIn(b"5 pictures are left", err)
            self.assertEqual(digests(self.folder), before)
            self.assertEqual(self.journals(), [])

    def test_when_the_disk_fills_up_what_was_renamed_can_be_taken_back(self):
        for number in range(8):
            self.put(tool_name(number), number)
        before = digests(self.folder)
        self.run_command("--rename", ".", status=1, preexec_fn=lambda: full_at(800))
        renamed = set(digests(self.folder)) - set(before)
        self.assertTrue(0 < len(renamed) < 8, renamed)
        self.run_command("--undo")
        self.assertEqual(digests(self.folder), before)

    def test_where_no_journal_can_be_nothing_is_renamed(self):
        self.put(tool_name(1))
        self.state.write_text("a file where the folder should be")
        _, err = self.run_command("--rename", ".", status=1)
        self.assertEqual(err, b"velmora-name: the journal can't be written, so nothing is "
                              b"renamed: Not a directory\n")
        self.assertEqual(self.names(), [tool_name(1)])

    def test_a_file_that_is_being_written_is_left_for_later(self):
        path = self.put(tool_name(1))
        with open(path, "ab"):
            _, err = self.run_command("--rename", ".", status=1)
        self.assertIn(b"is still being written", err)
        self.assertEqual(self.names(), [tool_name(1)])

    def test_a_full_disk_behind_the_output_ends_the_renames(self):
        for number in range(5):
            self.put(tool_name(number), number)
        with open("/dev/full", "wb") as full:
            self.run_command("--rename", ".", status=1, stdout=full)
        named = [name for name in self.names() if not name.startswith("Screenshot")]
        self.assertEqual(len(named), 1)
        self.run_command("--undo")
        self.assertTrue(all(name.startswith("Screenshot") for name in self.names()))

    def test_a_closed_reader_ends_the_command(self):
        for number in range(5):
            self.put(tool_name(number), number)
        process = self.start(".", preexec_fn=lambda: signal.signal(signal.SIGPIPE, signal.SIG_DFL))
        process.stdout.close()
        with process:
            process.stderr.read()
        self.assertEqual(process.returncode, -signal.SIGPIPE)

    def test_undo_waits_for_no_run_that_is_still_at_work(self):
        self.put(tool_name(1))
        self.run_command("--rename", ".")
        [journal] = self.journals()
        with subprocess.Popen(["flock", journal, "sh", "-c", "echo held; read line"],
                              stdin=subprocess.PIPE, stdout=subprocess.PIPE) as holder:
            holder.stdout.readline()
            _, err = self.run_command("--undo", status=1)
            holder.communicate(b"\n")
        self.assertIn(b"still renaming", err)
        self.run_command("--undo")
        self.assertEqual(self.names(), [tool_name(1)])

    def test_a_journal_that_is_damaged_takes_back_what_it_still_names(self):
        self.put(tool_name(1), 1)
        self.put(tool_name(2), 2)
        self.run_command("--rename", ".")
        [journal] = self.journals()
        first, second = journal.read_bytes().splitlines(keepends=True)
        journal.write_bytes(b"\0\0rubbish\n" + first + second[:-5])
        self.run_command("--undo")
        self.assertEqual(self.names(), [tool_name(1), "coastal-castle-tour.png"])


def full_at(bytes):
    """Writes beyond so many bytes of a file fail in this process, as on a full disk."""
    signal.signal(signal.SIGXFSZ, signal.SIG_IGN)
    resource.setrlimit(resource.RLIMIT_FSIZE, (bytes, bytes))


if __name__ == "__main__":
    unittest.main(verbosity=2)
