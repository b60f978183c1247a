#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""A screenshot's way through a whole desktop session, from the session's own tool to the clipboard.
VELMORA_SESSION names the session."""

import os
import pathlib
import shutil
import subprocess
import sys
import tempfile
import unittest

import case
import desktop
import sway

# The tray's colour, and its distance from the screen's edges.
TRAY_COLOUR = (232, 247, 255)
MARGIN = 44


def pixel(picture, x, y):
    """The colour of one pixel of a picture file."""
    place = f"1x1+{x}+{y}"
    raw = desktop.run("convert", str(picture), "-crop", place, "-depth", "8", "rgb:-")
    return tuple(raw[:3])


class X11Session:
    """The window manager of the test's world."""

    screen = (1600, 1000)
    bar_below = 0

    def __init__(self, tool, clipboard_manager=None):
        self._tool = tool
        self._clipboard_manager = clipboard_manager
        self.environment = {}

    @property
    def keeps_clipboard(self):
        """Whether another program keeps what one that ends has copied."""
        return self._clipboard_manager is not None

    def start(self, tools):
        self._page = tools.page(case.TITLE, case.PARAGRAPH)
        if self._clipboard_manager:
            nowhere = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
            self._clipboard_manager = subprocess.Popen(self._clipboard_manager, **nowhere)

    def stop(self):
        self._page.close()
        if self._clipboard_manager:
            self._clipboard_manager.terminate()
            self._clipboard_manager.wait(20)

    def close_welcome_window(self, velmora):
        velmora.close_welcome_window()

    def has_keyboard(self):
        """Whether typed text still goes into the page."""
        return desktop.active_window() == self._page.window

    def take_screenshot(self, folder):
        desktop.run(*(word.format(folder=folder) for word in self._tool))

    def photograph(self, path):
        desktop.run("maim", "--hidecursor", str(path))

    def pasted(self, kind):
        return desktop.clipboard(kind)


class KWinSession(X11Session):
    """KWin in place of the world's window manager."""

    def start(self, tools):
        nowhere = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
        command = ("kwin_x11", "--replace", "--no-kactivities")
        self._manager = subprocess.Popen(command, **nowhere)
        desktop.wait_until(self._manages, "KWin manages the windows", 30)
        super().start(tools)

    @staticmethod
    def _manages():
        check = desktop.output_of("xprop", "-root", "_NET_SUPPORTING_WM_CHECK").stdout.decode()
        if "window id" not in check:
            return False
        return "KWin" in desktop.window_property(check.split()[-1], "_NET_WM_NAME")

    def stop(self):
        super().stop()
        self._manager.terminate()
        self._manager.wait(20)


class TilingSession(X11Session):
    """A window manager that knows no key of ours to close a window."""

    @property
    def bar_below(self):
        """The height of i3's own bar; awesome has its bar above."""
        done = desktop.output_of("xdotool", "search", "--onlyvisible", "--class", "^i3bar$")
        return sum(desktop.geometry(window)[3] for window in map(int, done.stdout.split()))

    def close_welcome_window(self, velmora):
        window = desktop.wait_until(velmora.welcome_window, "the welcome window")

        def is_closed():
            if not velmora.welcome_window():
                return True
            desktop.output_of("xdotool", "windowactivate", str(window))
            if desktop.active_window() == window:
                desktop.press("Return")
            return False

        desktop.wait_until(is_closed, "the welcome window is closed", look_again=0.5)
        desktop.wait_until(self.has_keyboard, "the page is in front")


class SwaySession:
    screen = (1280, 720)
    bar_below = 0
    keeps_clipboard = False

    def __init__(self, x11):
        self._sway = sway.Sway(x11)
        self.environment = self._sway.environment | {"GRIM_DEFAULT_DIR": str(desktop.FOLDER)}
        if not x11:
            self.environment |= {"QT_QPA_PLATFORM": "wayland", "DISPLAY": ""}
            # Slow, but long enough traces to recognise Mesa's leaks by (tests/world/leaks.supp).
            slow = f"{os.environ['ASAN_OPTIONS']}:fast_unwind_on_malloc=0"
            self.environment["ASAN_OPTIONS"] = slow

    def start(self, _tools):
        desktop.install_gazette("foot")
        text = f"clear; printf '\\n\\n  {case.TITLE}\\n\\n {case.PARAGRAPH}'; exec sleep 1000"
        look = ("--font=DejaVu Sans Mono:size=20", "--override=colors.background=ffffff")
        look += ("--override=colors.foreground=000000", "--override=cursor.color=ffffff ffffff")
        self._terminal = subprocess.Popen(
            ["foot", "--app-id=gazette", *look, "sh", "-c", text],
            env=os.environ | self.environment,
            stderr=subprocess.DEVNULL,
        )
        desktop.wait_until(
            lambda: self._sway.message("[app_id=gazette]", "focus").returncode == 0, "the window"
        )

    def stop(self):
        self._terminal.kill()
        self._terminal.wait(20)
        self._sway.stop()

    def close_welcome_window(self, velmora):
        criteria = f"[pid={velmora.pid}]"
        desktop.wait_until(
            lambda: self._sway.message(criteria, "kill").returncode == 0, "the welcome window"
        )
        desktop.wait_until(
            lambda: self._sway.message(criteria, "focus").returncode != 0, "it is closed"
        )

    def has_keyboard(self):
        return self._sway.message("[app_id=gazette con_id=__focused__]", "nop").returncode == 0

    def take_screenshot(self, _folder):
        self._run("grim")

    def photograph(self, path):
        self._run("grim", str(path))

    def pasted(self, kind):
        return self._run("wl-paste", "--no-newline", "--type", kind).stdout

    def _run(self, *command):
        environment = os.environ | self.environment
        return subprocess.run(command, env=environment, stdout=subprocess.PIPE, timeout=30)


SESSIONS = {
    "openbox": lambda: X11Session(("scrot", "--focused", "{folder}/shot.png")),
    "xfce": lambda: X11Session(
        ("xfce4-screenshooter", "--fullscreen", "--save", "{folder}/shot.png"),
        clipboard_manager=("xfsettingsd", "--no-daemon"),
    ),
    "mate": lambda: X11Session(("scrot", "--focused", "{folder}/shot.png")),
    "kwin": lambda: KWinSession(("scrot", "--focused", "{folder}/shot.png")),
    "awesome": lambda: TilingSession(("scrot", "--focused", "{folder}/shot.png")),
    "i3": lambda: TilingSession(("scrot", "--focused", "{folder}/shot.png")),
    "sway": lambda: SwaySession(x11=True),
    "sway_without_x11": lambda: SwaySession(x11=False),
}


class Session(unittest.TestCase):
    def setUp(self):
        shutil.rmtree(desktop.FOLDER)
        desktop.FOLDER.mkdir()
        desktop.save_settings(copyBehavior="file")
        self.outside = pathlib.Path(tempfile.mkdtemp(dir=desktop.HOME))
        self.session = SESSIONS[os.environ["VELMORA_SESSION"]]()
        self.session.start(desktop.Tools(case.BUILD))
        self.addCleanup(self.session.stop)
        self.velmora = desktop.Velmora(case.BUILD, environment=self.session.environment)
        self.addCleanup(self.velmora.stop)
        self.velmora.start()
        self.session.close_welcome_window(self.velmora)

    def test_a_screenshot_gets_its_row_its_name_and_its_place_on_the_clipboard(self):
        self.session.take_screenshot(desktop.FOLDER)
        row = self.velmora.wait_for_row(
            lambda row: row.status == "Renamed automatically", "the row", case.NAMING_SECONDS
        )
        self.assertEqual(row.filename, f"{case.TITLE_NAME}.png")
        self.assertEqual(desktop.pictures(), [row.filename])
        named = str(desktop.FOLDER / row.filename).encode()
        desktop.wait_until(lambda: self.session.pasted("text/plain") == named, "the clipboard")
        desktop.wait_until(self.tray_is_in_its_corner, "the tray in its corner")
        self.assertTrue(desktop.stays(self.session.has_keyboard, 0.5))
        if self.session.keeps_clipboard:
            self.velmora.stop()
            self.assertEqual(self.session.pasted("text/plain"), named)

    def tray_is_in_its_corner(self):
        photograph = self.outside / "photograph.png"
        self.session.photograph(photograph)
        width, height = self.session.screen
        right, bottom = width - MARGIN, height - MARGIN - self.session.bar_below
        top = bottom - desktop.TRAY_HEIGHTS[1]
        edges = [(right - 300, top + 4), (right - 300, bottom - 4), (right - 4, bottom - 40)]
        return all(pixel(photograph, *place) == TRAY_COLOUR for place in edges)


if __name__ == "__main__":
    # Too large to be a package that the tests need.
    if os.environ["VELMORA_SESSION"] == "kwin" and not shutil.which("kwin_x11"):
        print("SKIP   : kwin_x11 is not installed")
        sys.exit(0)
    unittest.main(verbosity=2)
