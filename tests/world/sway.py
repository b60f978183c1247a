# SPDX-License-Identifier: MIT
"""A real Wayland desktop without a screen: sway, beside the X desktop of run-in-world."""

import os
import pathlib
import shutil
import subprocess
import tempfile

import desktop

# "nobody" on every system.
ORDINARY_USER = 65534


class Sway:
    """Runs until it is stopped. Where the test runs as root, an ordinary user runs it."""

    def __init__(self, x11):
        self.folder = pathlib.Path(tempfile.mkdtemp(prefix="velmora-sway."))
        settings = self.folder / "config"
        own_display = self.folder / "display"
        # The inner X server accepts only the desktop's own user.
        x_server = f'enable\nexec "xhost +local: && echo $DISPLAY > {own_display}"'
        settings.write_text(f"default_border none\nxwayland {x_server if x11 else 'disable'}\n")
        hidden = ("DISPLAY", "WAYLAND_DISPLAY", "SWAYSOCK", "DBUS_SESSION_BUS_ADDRESS")
        environment = {key: value for key, value in os.environ.items() if key not in hidden}
        environment |= {
            "HOME": str(self.folder),
            "XDG_RUNTIME_DIR": str(self.folder),
            "WLR_BACKENDS": "headless",
            "WLR_LIBINPUT_NO_DEVICES": "1",
            "WLR_RENDERER": "pixman",
        }
        command = ["sway", "--config", str(settings)]
        if os.geteuid() == 0:
            for path in (self.folder, settings):
                os.chown(path, ORDINARY_USER, ORDINARY_USER)
            user = str(ORDINARY_USER)
            command[:0] = ["setpriv", "--reuid", user, "--regid", user, "--clear-groups"]
        nowhere = {"stdout": subprocess.DEVNULL, "stderr": subprocess.DEVNULL}
        self._process = subprocess.Popen(command, env=environment, **nowhere)
        display = self.folder / "wayland-1"
        desktop.wait_until(lambda: display.exists() and self._sockets(), "sway runs", 30)
        self.environment = {
            "WAYLAND_DISPLAY": str(display),
            "SWAYSOCK": str(self._sockets()[0]),
            "XDG_CURRENT_DESKTOP": "sway",
        }
        if x11:
            desktop.wait_until(
                lambda: own_display.exists() and own_display.read_text().strip(), "its X server", 30
            )
            self.environment["DISPLAY"] = own_display.read_text().strip()

    def _sockets(self):
        return list(self.folder.glob("sway-ipc.*.sock"))

    def message(self, *words):
        """The result of one of sway's commands; its return code is 0 if it did something."""
        return desktop.output_of("swaymsg", "--socket", self.environment["SWAYSOCK"], *words)

    def stop(self):
        self._process.terminate()
        self._process.wait(20)
        shutil.rmtree(self.folder, ignore_errors=True)
