#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The running program is reached from outside: by a second start and over the session bus."""

import os
import pathlib
import re
import subprocess
import unittest

import case
import desktop
import panel
from windows import RECENT, WELCOME, ProgramWindows, title_of

PROGRAM = case.BUILD / "app" / "velmora"
ENTRY = pathlib.Path(__file__).parents[2] / "packaging" / "app.velmora.Velmora.desktop"


def call(method, *arguments):
    return panel.call(
        "app.velmora.Velmora", "/app/velmora/Velmora",
        f"org.freedesktop.Application.{method}", *arguments,
    )


class Reopening(ProgramWindows, case.EndToEnd):
    def act(self, action):
        self.assertTrue(self.velmora.act(action))

    def test_a_second_start_shows_the_welcome_window_and_ends(self):
        second = subprocess.run([PROGRAM], timeout=20)
        self.assertEqual(second.returncode, 0)
        self.wait_for_front(WELCOME)
        self.assertTrue(self.velmora.is_running)

    def test_a_second_start_brings_a_covered_window_to_the_front(self):
        subprocess.run([PROGRAM], timeout=20)
        self.wait_for_front(WELCOME)
        desktop.run("xdotool", "windowactivate", "--sync", str(self.page.window))
        subprocess.run([PROGRAM], timeout=20)
        self.wait_for_front(WELCOME)

    def test_other_programs_open_it_over_the_bus(self):
        self.assertEqual(call("Activate", "{}"), "()")
        self.wait_for_front(WELCOME)
        desktop.press("Return")
        desktop.wait_until(lambda: not self.window(WELCOME), "the welcome window has gone")
        self.assertEqual(call("Open", "['file:///tmp/x.png']", "{}"), "()")
        self.wait_for_front(WELCOME)

    def test_the_action_recent_opens_the_recent_screenshots(self):
        self.act("recent")
        self.wait_for_front(RECENT)

    def test_the_action_undo_takes_back_a_rename(self):
        path = self.drop_named()
        self.act("undo")
        desktop.wait_until(lambda: not path.exists(), "the file has its former name")
        self.assertEqual(len(desktop.pictures()), 1)

    def test_the_action_instant_is_kept(self):
        self.act("instant")
        message = "disable Apple screenshot thumbnail"
        desktop.wait_until(lambda: self.velmora.log.count(message), "the log tells of it")
        self.wait_for_front(WELCOME)

    def test_the_action_quit_ends_the_program_well(self):
        self.act("quit")
        desktop.wait_until(lambda: not self.velmora.is_running, "the program has ended")
        self.assertEqual(self.velmora.exit_code, 0)

    def test_an_action_that_is_none_is_refused(self):
        self.assertFalse(self.velmora.act("format"))
        self.assertTrue(self.velmora.is_running)

    def test_the_windows_bear_the_class_of_the_desktop_entry(self):
        call("Activate", "{}")
        self.wait_for_front(WELCOME)
        lines = ENTRY.read_text().splitlines()
        wanted = next(line.split("=")[1] for line in lines if line.startswith("StartupWMClass="))
        names = desktop.window_property(self.window(WELCOME), "WM_CLASS")
        self.assertEqual(names.split(", ")[1], f'"{wanted}"')

    def test_the_next_start_after_a_kill_runs(self):
        os.kill(self.velmora.pid, 9)
        desktop.wait_until(lambda: not self.velmora.is_running, "the program is dead")
        self.velmora.start()
        self.wait_for_front(WELCOME)


class StartedOverTheBus(ProgramWindows, unittest.TestCase):
    """The program is not running, and the bus starts it for a call."""

    def setUp(self):
        services = pathlib.Path(os.environ["XDG_DATA_HOME"], "dbus-1", "services")
        services.mkdir(parents=True, exist_ok=True)
        service = services / "app.velmora.Velmora.service"
        service.write_text(f"[D-BUS Service]\nName=app.velmora.Velmora\nExec={PROGRAM}\n")
        self.addCleanup(self.reload)
        self.addCleanup(service.unlink)
        self.reload()
        self.velmora = self

    @staticmethod
    def on_bus(method, *arguments):
        name = "org.freedesktop.DBus"
        return panel.call(name, "/org/freedesktop/DBus", f"{name}.{method}", *arguments)

    def reload(self):
        self.on_bus("ReloadConfig")

    @property
    def pid(self):
        owner = self.on_bus("GetConnectionUnixProcessID", "app.velmora.Velmora")
        return int(re.search(r"uint32 (\d+)", owner).group(1))

    def call(self, method, *arguments):
        self.assertEqual(call(method, *arguments), "()")
        self.addCleanup(self.quit)

    def quit(self):
        call("ActivateAction", "quit", "[]", "{}")
        desktop.wait_until(lambda: not desktop.Velmora.is_on_bus(), "the program has ended")

    def shows_only(self, title, seconds=1.5):
        """Whether the window with this title is the only one, or there is none, and it stays so."""

        def alone():
            titles = [title_of(window) for window in desktop.windows_of(self.pid)]
            return titles == ([title] if title else [])

        desktop.wait_until(alone, f"only {title}")
        return desktop.stays(alone, seconds)

    def test_the_action_recent_opens_only_the_recent_screenshots(self):
        self.call("ActivateAction", "recent", "[]", "{}")
        self.assertTrue(self.shows_only(RECENT))

    def test_the_action_undo_opens_nothing(self):
        self.call("ActivateAction", "undo", "[]", "{}")
        self.assertTrue(self.shows_only(None))

    def test_being_opened_shows_the_welcome_window(self):
        self.call("Activate", "{}")
        self.assertTrue(self.shows_only(WELCOME))


class WithoutABus(ProgramWindows, unittest.TestCase):
    """No session bus: a second start finds the running program through a lock and a socket."""

    def setUp(self):
        address = os.environ["DBUS_SESSION_BUS_ADDRESS"]
        self.addCleanup(os.environ.__setitem__, "DBUS_SESSION_BUS_ADDRESS", address)
        os.environ["DBUS_SESSION_BUS_ADDRESS"] = "unix:path=/nonexistent/bus"
        self.velmora = desktop.Velmora(case.BUILD, accessible=False)
        self.addCleanup(self.velmora.stop)
        self.velmora.start()

    def test_a_second_start_shows_the_welcome_window_and_ends(self):
        self.wait_for_front(WELCOME)
        desktop.press("Return")
        desktop.wait_until(lambda: not self.window(WELCOME), "the welcome window has gone")
        second = subprocess.run([PROGRAM], timeout=20)
        self.assertEqual(second.returncode, 0)
        self.wait_for_front(WELCOME)


if __name__ == "__main__":
    unittest.main(verbosity=2)
