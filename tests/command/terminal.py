#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The command at a terminal: the progress bar, and Ctrl+C."""

import fcntl
import os
import pty
import re
import select
import signal
import struct
import subprocess
import termios
import time
import unittest

from command_case import LIMIT_SECONDS, CommandCase, tool_name

COLUMNS = 72
CTRL_C = b"\x03"


class Terminal:
    """The master side of a terminal, and all that was written on it."""

    def __init__(self):
        self.master, self.slave = pty.openpty()
        fcntl.ioctl(self.slave, termios.TIOCSWINSZ, struct.pack("HHHH", 24, COLUMNS, 0, 0))
        self.seen = b""

    def close(self):
        os.close(self.master)

    def start_in_it(self):
        """Makes the terminal the one that the process is controlled by. Who starts programs in the
        background has them ignore Ctrl+C."""
        signal.signal(signal.SIGINT, signal.SIG_DFL)
        os.setsid()
        fcntl.ioctl(self.slave, termios.TIOCSCTTY, 0)

    def read_until(self, condition):
        end = time.monotonic() + LIMIT_SECONDS
        while not condition(self.seen):
            if not select.select([self.master], [], [], end - time.monotonic())[0]:
                raise AssertionError(f"not seen in time: {self.seen!r}")
            try:
                self.seen += os.read(self.master, 65536)
            except OSError:
                return self.seen
        return self.seen

    def read_all(self):
        return self.read_until(lambda seen: False)


class AtTheTerminal(CommandCase):
    def setUp(self):
        super().setUp()
        self.terminal = Terminal()
        self.addCleanup(self.terminal.close)

    def start_there(self, *arguments, **options):
        process = self.start(*arguments, preexec_fn=self.terminal.start_in_it,
                             **{"stdin": self.terminal.slave, "stderr": self.terminal.slave,
                                **options})
        os.close(self.terminal.slave)
        self.addCleanup(process.communicate)
        return process

    def put_many(self, count):
        for number in range(count):
            self.put(tool_name(number), number)

    def test_the_bar_tells_how_far_it_is_and_goes(self):
        self.put_many(40)
        process = self.start_there("--rename", ".")
        seen = self.terminal.read_all()
        self.assertEqual(process.wait(LIMIT_SECONDS), 0)
        lines = seen.split(b"\r\x1b[K")
        self.assertRegex(lines[0], rb"^\[\.+\] 0 of 40$")
        self.assertTrue(any(re.fullmatch(rb"\[#+\.*\] \d+ of 40, [\d.]+/s, 0:\d\d left", line)
                            for line in lines), lines)
        self.assertTrue(all(len(line) < COLUMNS for line in lines), lines)
        self.assertEqual(lines[-1], b"")

    def test_results_on_the_same_terminal_stand_above_the_bar(self):
        self.put_many(3)
        self.start_there(".", stdout=self.terminal.slave)
        shown = self.terminal.read_all().replace(b"\r\n", b"\n")
        # What an eraser takes away is the bar and nothing else.
        left = re.sub(rb"[^\n]*\r\x1b\[K", b"", shown)
        self.assertEqual([line.split(b"\t")[0].decode() for line in left.splitlines()],
                         [f"./{tool_name(number)}" for number in range(3)])

    def test_without_a_terminal_there_is_no_bar(self):
        self.put_many(3)
        _, err = self.run_command(".")
        self.assertEqual(err, b"")

    def test_ctrl_c_finishes_what_is_in_hand_and_says_what_is_left(self):
        self.put_many(150)
        process = self.start_there("--rename", ".")
        first = process.stdout.readline()
        os.write(self.terminal.master, CTRL_C)
        seen = self.terminal.read_all()
        out = first + process.stdout.read()
        self.assertEqual(process.wait(LIMIT_SECONDS), 128 + signal.SIGINT)
        told = dict(line.split("\t") for line in out.decode().splitlines())
        self.assertTrue(0 < len(told) < 150)
        self.assertIn(f"{150 - len(told)} pictures are left".encode(), seen)
        # What was said is what happened.
        self.assertEqual(set(self.names()),
                         {tool_name(number) for number in range(len(told), 150)}
                         | {name.removeprefix("./") for name in told.values()})
        self.run_command("--undo")
        self.assertEqual(self.names(), [tool_name(number) for number in range(150)])

    def test_a_second_signal_ends_it_at_once(self):
        self.put_many(150)
        process = self.start("--rename", ".", stderr=subprocess.DEVNULL)
        process.stdout.readline()
        process.send_signal(signal.SIGTERM)
        process.send_signal(signal.SIGSTOP)
        os.waitid(os.P_PID, process.pid, os.WSTOPPED)
        process.send_signal(signal.SIGTERM)
        process.send_signal(signal.SIGCONT)
        process.communicate(timeout=LIMIT_SECONDS)
        self.assertIn(process.returncode, (-signal.SIGTERM, 128 + signal.SIGTERM))
        self.run_command("--undo")
        self.assertEqual(self.names(), [tool_name(number) for number in range(150)])

    def test_a_signal_that_is_ignored_stays_so(self):
        self.put_many(20)
        process = self.start(".", stderr=subprocess.DEVNULL,
                             preexec_fn=lambda: signal.signal(signal.SIGHUP, signal.SIG_IGN))
        first = process.stdout.readline()
        process.send_signal(signal.SIGHUP)
        out = first + process.stdout.read()
        process.communicate(timeout=LIMIT_SECONDS)
        self.assertEqual(process.returncode, 0)
        self.assertEqual(len(out.splitlines()), 20)


if __name__ == "__main__":
    unittest.main(verbosity=2)
