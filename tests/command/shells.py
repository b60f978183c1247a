#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What is installed beside the command: its manual page, and its completion in real shells."""

import os
import pathlib
import pty
import re
import select
import subprocess
import tempfile
import time
import unittest

from command_case import BUILD, COMMAND, LIMIT_SECONDS, environment

# Prints its arguments in place of the command.
ECHO = "velmora-name() { printf '<%s>' given \"$@\" end; }; "


def installed():
    prefix = pathlib.Path(tempfile.mkdtemp(prefix="installed-"))
    subprocess.run(["cmake", "--install", BUILD, "--prefix", prefix, "--component", "desktop"],
                   check=True, stdout=subprocess.DEVNULL, timeout=LIMIT_SECONDS)
    return prefix / "share"


def options():
    """Those that --help names."""
    text = subprocess.run([COMMAND, "--help"], check=True, capture_output=True, text=True).stdout
    return sorted(set(re.findall(r"(?<!\S)--\w+", text)))


class Shells(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.share = installed()
        cls.options = options()

    def type_into(self, shell, setup, keys):
        """What the command was given when these keys have been typed into an interactive shell."""
        with tempfile.TemporaryDirectory() as folder:
            pathlib.Path(folder, "Screenshot from now.png").touch()
            process, terminal = pty.fork()
            if process == 0:
                os.chdir(folder)
                os.execvpe(shell[0], shell, environment(HOME=folder, TERM="dumb", PS1="ready "))
            try:
                os.write(terminal, f"{ECHO}{setup}; echo re''ady\n".encode())
                self.read_until(terminal, rb"\nready")
                os.write(terminal, keys)
                return self.read_until(terminal, rb"<given>(.*)<end>")[1].decode()
            finally:
                os.close(terminal)
                os.kill(process, 9)
                os.waitpid(process, 0)

    def read_until(self, terminal, pattern):
        seen = b""
        end = time.monotonic() + LIMIT_SECONDS
        while not (found := re.search(pattern, seen)):
            if not select.select([terminal], [], [], max(0, end - time.monotonic()))[0]:
                self.fail(f"not seen in time: {pattern} in {seen!r}")
            seen += os.read(terminal, 65536)
        return found

    def bash(self, keys):
        file = self.share / "bash-completion/completions/velmora-name"
        return self.type_into(["bash", "--norc", "--noprofile", "-i"], f". {file}", keys)

    def zsh(self, keys):
        folder = self.share / "zsh/site-functions"
        return self.type_into(["zsh", "-f", "-i"], f"fpath=({folder} $fpath); "
                              "autoload -U compinit; compinit -u -D", keys)

    def fish(self, line):
        file = self.share / "fish/vendor_completions.d/velmora-name.fish"
        with tempfile.TemporaryDirectory() as home:
            out = subprocess.run(["fish", "--no-config", "-c", f"source {file}; complete -C '{line}'"],
                                 check=True, capture_output=True, text=True, timeout=LIMIT_SECONDS,
                                 env=environment(HOME=home)).stdout
        return [line.split("\t")[0] for line in out.splitlines()]

    def test_bash_completes_options_and_files(self):
        self.assertEqual(self.bash(b"velmora-name --ren\t\n"), "<--rename>")
        self.assertEqual(self.bash(b"velmora-name --rename Scr\t\n"),
                         "<--rename><Screenshot from now.png>")

    def test_zsh_completes_options_and_files(self):
        self.assertEqual(self.zsh(b"velmora-name --ren\t\n"), "<--rename>")
        self.assertEqual(self.zsh(b"velmora-name --rename Scr\t\n"),
                         "<--rename><Screenshot from now.png>")

    def test_fish_completes_all_options(self):
        self.assertEqual(sorted(self.fish("velmora-name --")), self.options)

    def test_every_option_is_completed_by_all_shells(self):
        for name in ("bash-completion/completions/velmora-name", "zsh/site-functions/_velmora-name"):
            text = (self.share / name).read_text()
            self.assertEqual(sorted(set(re.findall(r"""(?<![\w-])--\w+(?=[\s\[}"])""", text))),
                             self.options, name)

    def test_the_manual_page_is_sound_and_has_every_option(self):
        page = self.share / "man/man1/velmora-name.1"
        done = subprocess.run(["man", "--warnings", "--local-file", page], check=True,
                              capture_output=True, text=True, timeout=LIMIT_SECONDS,
                              env=environment(MANWIDTH="100", LC_ALL="C.UTF-8"))
        self.assertEqual(done.stderr, "")
        found = set(re.findall(r"(?<![\w-])--\w+", done.stdout))
        self.assertEqual(found, set(self.options))


if __name__ == "__main__":
    unittest.main(verbosity=2)
