# SPDX-License-Identifier: MIT
"""What the tests of the command share: the real program on real files, without a display and without
a session bus."""

import hashlib
import os
import pathlib
import shutil
import subprocess
import tempfile
import unittest

BUILD = pathlib.Path(os.environ["VELMORA_BUILD"])
COMMAND = BUILD / "command" / "velmora-name"
LIMIT_SECONDS = 100
PAGES = {
    "quarterly-budget-meeting.png": "Quarterly Budget Meeting",
    "alpine-bakery-orders.png": "Alpine Bakery Orders",
    "coastal-castle-tour.png": "Coastal Castle Tour",
    "desert-harbour-lights.png": "Desert Harbour Lights",
}
NOT_FOR_THE_COMMAND = ("DISPLAY", "WAYLAND_DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "QT_QPA_PLATFORM",
                       "XDG_RUNTIME_DIR")


def environment(**changes):
    """Without anything of a session; a change to None takes a variable away."""
    variables = {name: value for name, value in os.environ.items()
                 if name not in NOT_FOR_THE_COMMAND}
    variables.update({name: value for name, value in changes.items() if value is not None})
    for name in (name for name, value in changes.items() if value is None):
        variables.pop(name, None)
    return variables


def draw_pages(folder):
    """The pictures of PAGES, each under the name that it should get."""
    for name, title in PAGES.items():
        subprocess.run(["convert", "-font", "DejaVu-Sans", "-pointsize", "28", f"label:{title}",
                        "-bordercolor", "white", "-border", "30", folder / name], check=True,
                       timeout=LIMIT_SECONDS)


def tool_name(number):
    """A name as a screenshot tool gives it, another one for each number below a million."""
    minutes, seconds = divmod(number, 60)
    hours, minutes = divmod(minutes, 60)
    days, hours = divmod(hours, 24)
    return f"Screenshot from 2024-03-{days + 1:02} {hours:02}-{minutes:02}-{seconds:02}.png"


def digest(path):
    with open(path, "rb") as file:
        return hashlib.sha256(file.read()).hexdigest()


def digests(folder):
    """Name and digest of every file, hidden ones too."""
    folder = os.fsencode(folder)
    return {name: digest(os.path.join(folder, name)) for name in os.listdir(folder)}


class CommandCase(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.pages = pathlib.Path(tempfile.mkdtemp(prefix="pages-"))
        draw_pages(cls.pages)

    @classmethod
    def tearDownClass(cls):
        shutil.rmtree(cls.pages)

    def setUp(self):
        self.home = pathlib.Path(tempfile.mkdtemp(prefix="command-"))
        self.addCleanup(self.clean_up)
        self.folder = self.home / "Pictures"
        self.folder.mkdir()
        self.state = self.home / "state"

    def clean_up(self):
        subprocess.run(["chmod", "-R", "u+rwx", self.home], check=True)
        shutil.rmtree(self.home)

    def page(self, number=0):
        """The path of a drawn page."""
        return self.pages / list(PAGES)[number % len(PAGES)]

    def put(self, name, number=0, folder=None):
        """A copy of a page under this name (text or bytes)."""
        path = os.path.join(os.fsencode(folder or self.folder), os.fsencode(name))
        shutil.copyfile(self.page(number), path)
        return path

    def environment(self, **changes):
        return environment(**{"HOME": str(self.home), "XDG_STATE_HOME": str(self.state), **changes})

    def start(self, *arguments, cwd=None, **options):
        options = {"stdout": subprocess.PIPE, "stderr": subprocess.PIPE,
                   "stdin": subprocess.DEVNULL, "env": self.environment(), **options}
        return subprocess.Popen([COMMAND, *arguments], cwd=cwd or self.folder, **options)

    def run_command(self, *arguments, status=0, input=None, **options):
        """The command's output and its errors, as bytes; its exit status must be this one."""
        if input is not None:
            options["stdin"] = subprocess.PIPE
        process = self.start(*arguments, **options)
        out, err = process.communicate(input, timeout=LIMIT_SECONDS)
        self.assertEqual(process.returncode, status, (out or b"") + (err or b""))
        return out, err

    def lines(self, *arguments, **options):
        """The output's lines, each a list of its fields."""
        out, _ = self.run_command(*arguments, **options)
        return [line.split("\t") for line in out.decode().splitlines()]

    def names(self, folder=None):
        return sorted(os.listdir(folder or self.folder))

    def journals(self):
        """Of what can be undone."""
        return sorted((self.state / "velmora").glob("renames-*"))
