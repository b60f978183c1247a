# SPDX-License-Identifier: MIT
"""What tests, benchmarks and the demonstration do on the private desktop of run-in-world: start the
program, take screenshots of real windows, examine the tray as another program sees it, and use it
with the mouse and the keyboard."""

import configparser
import json
import os
import pathlib
import re
import subprocess
import time

HOME = pathlib.Path(os.environ["HOME"])
FOLDER = HOME / "Desktop"
SETTINGS = pathlib.Path(os.environ["XDG_CONFIG_HOME"]) / "velmora" / "velmora.conf"
LOG = pathlib.Path("/tmp/Velmora.log")

TRAY_WIDTH = 620
TRAY_HEIGHTS = {1: 88, 2: 166, 3: 244}
ROW_PITCH = 78
LOOK_AGAIN_SECONDS = 0.02


class Deadline(AssertionError):
    """A condition did not become true in time."""


def wait_until(condition, what, seconds=10, look_again=LOOK_AGAIN_SECONDS):
    """The condition's first true value; checked again and again until the deadline."""
    end = time.monotonic() + seconds
    while True:
        value = condition()
        if value:
            return value
        if time.monotonic() > end:
            raise Deadline(f"after {seconds} s still not: {what}")
        time.sleep(look_again)


def stays(condition, seconds):
    """Whether the condition holds all the time."""
    end = time.monotonic() + seconds
    while time.monotonic() < end:
        if not condition():
            return False
        time.sleep(LOOK_AGAIN_SECONDS)
    return True


def let_pass(seconds):
    """Lets time pass, where time itself is the subject: the pace of a user or of a writer."""
    time.sleep(max(0, seconds))


def appears(path, seconds):
    """Whether the file appears within the time."""
    return not stays(lambda: not path.exists(), seconds)


def set_file_manager(entry):
    """Makes the file manager with this desktop entry the user's own."""
    path = pathlib.Path(os.environ["XDG_CONFIG_HOME"]) / "mimeapps.list"
    path.write_text(f"[Default Applications]\ninode/directory={entry}\n")


def run(*command, timeout=20):
    """The standard output of a command that must succeed."""
    return subprocess.run(command, check=True, stdout=subprocess.PIPE, timeout=timeout).stdout


def output_of(*command):
    """The result of a command that may fail, with its output."""
    return subprocess.run(command, capture_output=True, timeout=20)


def pictures(folder=FOLDER):
    """The names of the files in the folder."""
    return sorted(entry.name for entry in folder.iterdir() if not entry.name.startswith("."))


class Log:
    """The lines added to the program's log since this object was made. The log is one file for all
    users and worlds, so look for lines that name a path of this world."""

    def __init__(self):
        self._start = LOG.stat().st_size if LOG.exists() else 0

    def messages(self):
        if not LOG.exists():
            return []
        with LOG.open("rb") as file:
            file.seek(self._start)
            lines = file.read().decode().splitlines()
        return [line.split(" ", 1)[1] for line in lines if " " in line]

    def own_messages(self):
        return [message for message in self.messages() if str(HOME) in message]

    def count(self, message):
        return self.messages().count(message)


class Tools:
    """The helper programs of a build folder."""

    def __init__(self, build):
        self._folder = pathlib.Path(build) / "tests" / "tools"

    def page(self, title, paragraph):
        """A window with text in it, in front of the others."""
        return Page(self._folder / "sample_page", title, paragraph)

    def save_page(self, title, paragraph, path):
        run(self._folder / "sample_page", title, paragraph, "--save", path)

    def tree(self, pid):
        done = output_of(self._folder / "accessible_tree", str(pid))
        return json.loads(done.stdout) if done.returncode == 0 else None


def install_gazette(program):
    """The desktop entry of an application named "Gazette"."""
    entries = pathlib.Path(os.environ["XDG_DATA_HOME"]) / "applications"
    entries.mkdir(parents=True, exist_ok=True)
    (entries / "gazette.desktop").write_text(
        "[Desktop Entry]\nType=Application\nName=Gazette\n"
        f"Exec={program}\nStartupWMClass=sample_page\n"
    )


class Page:
    """An ordinary application named "Gazette" that shows a page."""

    def __init__(self, program, title, paragraph):
        install_gazette(program)
        self._process = subprocess.Popen([program, title, paragraph])
        self.window = wait_until(lambda: windows_of(self._process.pid), "the page has a window")[0]
        wait_until(lambda: active_window() == self.window, "the page is in front")

    def close(self):
        self._process.terminate()
        self._process.wait(10)


def windows_of(pid):
    """The visible windows of a process, as numbers."""
    done = output_of("xdotool", "search", "--onlyvisible", "--pid", str(pid))
    return [int(word) for word in done.stdout.split()]


def active_window():
    done = output_of("xdotool", "getactivewindow")
    return int(done.stdout) if done.returncode == 0 else None


def geometry(window):
    """x, y, width and height of a window on the screen."""
    text = run("xdotool", "getwindowgeometry", "--shell", str(window)).decode()
    values = dict(line.split("=") for line in text.splitlines())
    return tuple(int(values[name]) for name in ("X", "Y", "WIDTH", "HEIGHT"))


def exists(window):
    return output_of("xprop", "-id", str(window), "WM_STATE").returncode == 0


def is_steady(window, seconds=0.3):
    """Whether nothing in the window changes for a while."""
    def look():
        return run("maim", "--hidecursor", "--window", str(window), "--format", "bmp")

    first = look()
    return stays(lambda: look() == first, seconds)


def window_property(window, name):
    """A window's property as xprop prints it; empty when it is not set or the window is gone."""
    text = output_of("xprop", "-id", str(window), name).stdout.decode()
    return text.split("=", 1)[1].strip() if "=" in text else ""


def clipboard_targets():
    done = output_of("xclip", "-selection", "clipboard", "-o", "-t", "TARGETS")
    return done.stdout.decode().split()


def clipboard(target):
    """What another program gets when it pastes this type."""
    return run("xclip", "-selection", "clipboard", "-o", "-t", target)


def set_clipboard(text):
    command = ["xclip", "-selection", "clipboard", "-i"]
    subprocess.run(command, input=text.encode(), check=True, stdout=subprocess.DEVNULL)


def click(x, y):
    run("xdotool", "mousemove", str(x), str(y), "click", "1")


def press(*keys):
    run("xdotool", "key", "--clearmodifiers", *keys)


def type_text(text):
    run("xdotool", "type", "--clearmodifiers", "--delay", "5", text)


def read_settings():
    store = configparser.ConfigParser(interpolation=None)
    store.optionxform = str
    store.read(SETTINGS)
    if not store.has_section("General"):
        store.add_section("General")
    return store


def save_settings(**settings):
    """Writes the preferences as the program stores them. The program may be storing its recent list
    at the same moment and write over them; then they are written again."""

    def are_stored():
        stored = read_settings()["General"]
        return all(stored.get(name) == value for name, value in settings.items())

    def write():
        store = read_settings()
        store["General"].update(settings)
        SETTINGS.parent.mkdir(parents=True, exist_ok=True)
        with SETTINGS.open("w") as file:
            store.write(file, space_around_delimiters=False)
        return stays(are_stored, 0.4)

    wait_until(write, "the settings are stored")


class Row:
    """One row of the tray as assistive technologies see it."""

    def __init__(self, elements):
        self._elements = elements
        self.texts = [each["name"] for each in elements if each["role"] == "label" and each["name"]]

    def __repr__(self):
        return f"Row({self.filename!r}, {self.texts})"

    @property
    def filename(self):
        return self._field["text"]

    @property
    def _field(self):
        return next(each for each in self._elements if "text" in each)

    @property
    def freshness(self):
        return next((text for text in self.texts if text in ("NEW", "EARLIER")), None)

    @property
    def status(self):
        return next((text for text in self.texts if text not in ("NEW", "EARLIER")), "")

    @property
    def is_editing(self):
        return self._field["focused"]

    @property
    def buttons(self):
        """The names of the buttons, left to right."""
        found = [each for each in self._elements if each["role"] in ("push button", "button")]
        return [each["name"] for each in sorted(found, key=lambda each: each["place"][0])]

    def button(self, name):
        """The middle of a button on the screen; nothing when the row has no such button."""
        for each in self._elements:
            if each["role"] in ("push button", "button") and each["name"] == name:
                return middle(each)
        return None

    @property
    def field(self):
        """The middle of the filename field."""
        return middle(self._field)


def middle(element):
    x, y, width, height = element["place"]
    return x + width // 2, y + height // 2


def leaves(element):
    if not element["children"]:
        yield element
    for child in element["children"]:
        yield from leaves(child)


def slow_disk(build, folders, milliseconds, calls=(), report=None):
    """The environment of a program for which each call on something in these folders takes this
    much longer; see SlowDisk.h."""
    library = pathlib.Path(build) / "tests" / "tools" / "libvelmora_slow_disk.so"
    sanitizer = os.environ.get("ASAN_OPTIONS", "")
    environment = {
        "LD_PRELOAD": f"{library} {os.environ.get('LD_PRELOAD', '')}",
        "ASAN_OPTIONS": f"{sanitizer}:verify_asan_link_order=0",
        "SLOW_DISK_FOLDERS": ":".join(map(str, folders)),
        "SLOW_DISK_MILLISECONDS": str(milliseconds),
        "SLOW_DISK_CALLS": ",".join(calls),
    }
    if report:
        environment["SLOW_DISK_REPORT"] = str(report)
    return environment


class Velmora:
    """The running program."""

    def __init__(self, build, accessible=True, environment=None):
        self._program = pathlib.Path(build) / "app" / "velmora"
        self._environment = environment or {}
        self._tools = Tools(build)
        self._accessible = accessible
        self._process = None
        self.log = None

    def start(self, look_again=LOOK_AGAIN_SECONDS, seconds=20):
        """Starts the program and returns when it watches the folder."""
        environment = dict(os.environ) | self._environment
        if self._accessible:
            environment["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        self.log = Log()
        self._process = subprocess.Popen([self._program], env=environment)
        wait_until(self._watches, "the program watches the folder", seconds, look_again)
        if self._accessible:
            wait_until(lambda: self._tools.tree(self.pid), "the program tells of its elements")
        return self

    def welcome_window(self):
        """The welcome window while it is shown: the only tall one."""
        lowest = max(TRAY_HEIGHTS.values())
        tall = (each for each in windows_of(self.pid) if geometry(each)[3] > lowest)
        return next(tall, None)

    def close_welcome_window(self):
        """Closes the welcome window, as the user does."""
        front = active_window()
        window = wait_until(lambda: windows_of(self.pid), "the welcome window")[0]

        def is_closed():
            if window not in windows_of(self.pid):
                return True
            # A window that is only just appearing may miss the key.
            output_of("xdotool", "windowactivate", str(window))
            if active_window() == window:
                press("alt+F4")
            return False

        wait_until(is_closed, "the welcome window is closed", look_again=0.2)
        # The window that was in front may be gone; the window manager still names it for a while.
        if front not in (None, window) and exists(front):
            run("xdotool", "windowactivate", "--sync", str(front))
        return self

    def _watches(self):
        if self._process.poll() is not None:
            raise AssertionError(f"the program ended with {self._process.returncode}")
        messages = self.log.messages()
        own = f"watching {FOLDER}"
        return own in messages and "watcher start" in messages[messages.index(own):]

    def stop(self):
        if self._process and self._process.poll() is None:
            self._process.terminate()
            self._process.wait(10)

    def kill(self):
        """Kills it at once, without a chance to finish anything."""
        self._process.kill()
        self._process.wait(10)

    def act(self, action):
        """Requests a menu action, as a launcher does. Returns whether it was received."""
        method = "org.freedesktop.Application.ActivateAction"
        place = ("--dest", "app.velmora.Velmora", "--object-path", "/app/velmora/Velmora")
        call = ("gdbus", "call", "--session", *place, "--method", method, action, "[]", "{}")
        return output_of(*call).returncode == 0

    @staticmethod
    def activate():
        """Opens it again, as a launcher does. Returns whether that was received."""
        method = "org.freedesktop.Application.Activate"
        place = ("--dest", "app.velmora.Velmora", "--object-path", "/app/velmora/Velmora")
        call = ("gdbus", "call", "--session", *place, "--method", method, "{}")
        return output_of(*call).returncode == 0

    def elements(self):
        """The program's accessibility tree; nothing when the program does not answer."""
        return self._tools.tree(self.pid)

    @staticmethod
    def is_on_bus():
        """Whether any instance can be reached."""
        bus = ("--dest", "org.freedesktop.DBus", "--object-path", "/org/freedesktop/DBus")
        method = ("--method", "org.freedesktop.DBus.NameHasOwner", "app.velmora.Velmora")
        return b"true" in run("gdbus", "call", "--session", *bus, *method)

    @property
    def pid(self):
        return self._process.pid

    @property
    def is_running(self):
        return self._process.poll() is None

    @property
    def exit_code(self):
        """Nothing while the program runs."""
        return self._process.poll()

    def tray_window(self):
        """The tray's X window while it is shown."""
        for window in windows_of(self.pid):
            width, height = geometry(window)[2:]
            if width == TRAY_WIDTH and height in TRAY_HEIGHTS.values():
                return window
        return None

    def rows(self):
        """The tray's rows, top to bottom."""
        tree = self._tools.tree(self.pid)
        if tree is None:
            return []
        for window in tree["children"]:
            _, top, width, height = window["place"]
            if width == TRAY_WIDTH and height in TRAY_HEIGHTS.values() and window["showing"]:
                return self._rows_of(window, top)
        return []

    @staticmethod
    def _rows_of(window, top):
        by_row = {}
        for element in leaves(window):
            if element["showing"]:
                by_row.setdefault((middle(element)[1] - top - 8) // ROW_PITCH, []).append(element)
        rows = [by_row[index] for index in sorted(by_row)]
        return [Row(elements) for elements in rows if any("text" in each for each in elements)]

    def wait_for_row(self, condition, what, seconds=10):
        """The first row for which the condition holds."""

        def found():
            return next((row for row in self.rows() if condition(row)), None)

        return wait_until(found, what, seconds)

    @property
    def is_sanitized(self):
        """Sanitizers keep freed memory for themselves, and make everything several times slower."""
        return re.search(r"/lib[at]san\.so", pathlib.Path(f"/proc/{self.pid}/maps").read_text())

    def private_bytes(self):
        """The resident memory that the process does not share."""
        rollup = pathlib.Path(f"/proc/{self.pid}/smaps_rollup").read_text()
        private = re.findall(r"^Private_(?:Clean|Dirty):\s+(\d+) kB", rollup, re.M)
        return 1024 * sum(map(int, private))

    def processor_seconds(self):
        """The processor time used by all threads together, including ended ones."""
        fields = pathlib.Path(f"/proc/{self.pid}/stat").read_text().rsplit(")", 1)[1].split()
        user, system = int(fields[11]), int(fields[12])
        return (user + system) / os.sysconf("SC_CLK_TCK")

    def descriptor_count(self):
        return len(list(pathlib.Path(f"/proc/{self.pid}/fd").iterdir()))
