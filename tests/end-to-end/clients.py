#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""What other programs get from Velmora: the clipboard, a drop, a file manager that opens."""

import subprocess
import unittest
import urllib.parse

import case
import desktop


def uri(path):
    return "file://" + urllib.parse.quote(str(path))


def file_manager_windows():
    done = subprocess.run(
        ["xdotool", "search", "--onlyvisible", "--class", "thunar"], capture_output=True, timeout=20
    )
    return [int(word) for word in done.stdout.split()]


class Clipboard(case.EndToEnd):
    def test_by_default_the_clipboard_is_left_alone(self):
        desktop.set_clipboard("kept")
        self.drop_named()
        self.assertEqual(desktop.clipboard("UTF8_STRING"), b"kept")

    def test_the_copy_button_copies_picture_and_file(self):
        path = self.drop_named()
        desktop.click(*self.velmora.rows()[0].button("Copy"))
        self.velmora.wait_for_row(lambda row: row.status == "Copied", "the outcome")
        self.assertEqual(desktop.clipboard("image/png"), path.read_bytes())
        self.assertEqual(desktop.clipboard("text/uri-list"), f"{uri(path)}\r\n".encode())
        self.assertEqual(desktop.clipboard("UTF8_STRING"), str(path).encode())
        self.assertEqual(
            desktop.clipboard("x-special/gnome-copied-files"), f"copy\n{uri(path)}".encode()
        )
        self.assertEqual(self.velmora.log.own_messages()[-1], f"copied {path}")

    def copy_at_arrival(self, behavior):
        desktop.set_clipboard("replaced")
        desktop.save_settings(copyBehavior=behavior)
        return self.drop_named()

    def test_a_new_picture_is_copied_as_set(self):
        path = self.copy_at_arrival("image")
        targets = desktop.wait_until(
            lambda: [each for each in [desktop.clipboard_targets()] if "image/png" in each],
            "the picture on the clipboard",
        )[0]
        self.assertNotIn("text/uri-list", targets)
        self.assertEqual(desktop.clipboard("image/png"), path.read_bytes())

    def test_a_new_file_is_copied_as_set_and_follows_its_name(self):
        path = self.copy_at_arrival("file")
        desktop.wait_until(
            lambda: desktop.clipboard("text/uri-list") == f"{uri(path)}\r\n".encode(),
            "the clipboard names the renamed file",
        )
        self.assertNotIn("image/png", desktop.clipboard_targets())

    def test_the_log_tells_of_one_screenshot_in_order(self):
        desktop.save_settings(copyBehavior="imageAndFile")
        dropped = desktop.FOLDER / "Screenshot 1.png"
        self.drop_named()
        messages = self.velmora.log.own_messages()
        self.assertEqual(messages[:2], [f"watching {desktop.FOLDER}", f"detected {dropped}"])
        self.assertRegex(messages[2], f"^copied {desktop.FOLDER}/{case.FALLBACK.pattern}$")
        self.assertEqual(messages[3:], [])
        silent = desktop.stays(lambda: self.velmora.log.own_messages() == messages, 0.5)
        self.assertTrue(silent, self.velmora.log.own_messages())


class FileManager(case.EndToEnd):
    def open_thunar(self, folder):
        process = subprocess.Popen(["thunar", str(folder)], stderr=subprocess.DEVNULL)
        self.addCleanup(process.wait, 20)
        self.addCleanup(process.terminate)
        window = desktop.wait_until(file_manager_windows, "the file manager's window", 30)[0]
        desktop.run("xdotool", "windowsize", "--sync", str(window), "700", "500")
        desktop.run("xdotool", "windowmove", "--sync", str(window), "40", "60")
        return window

    def test_a_drop_into_the_file_manager_makes_a_copy_with_the_current_name(self):
        path = self.drop_named()
        target = self.outside / "drops"
        target.mkdir()
        x, y, width, height = desktop.geometry(self.open_thunar(target))
        tray_x, tray_y, _, _ = desktop.geometry(self.velmora.tray_window())
        start = (tray_x + 8 + 8 + 4 + 10 + 32, tray_y + 44)
        end = (x + width - 150, y + height // 2)
        copy = target / path.name

        for attempt in range(4):
            with self.subTest(attempt=attempt):
                self.drag(start, end)
                desktop.wait_until(copy.exists, "the copy")
                desktop.wait_until(
                    lambda: copy.read_bytes() == path.read_bytes(), "the whole copy"
                )
                copy.unlink()

    def drag(self, start, end):
        """Drags like a hand: away from the picture, in small steps to the target, and around there
        before it lets go."""
        desktop.run("xdotool", "mousemove", "--sync", *map(str, start), "mousedown", "1")
        self.move_pointer(start, (start[0] - 60, start[1] - 60), 6)
        desktop.wait_until(
            lambda: len(desktop.windows_of(self.velmora.pid)) > 1, "the picture under the pointer"
        )
        self.move_pointer((start[0] - 60, start[1] - 60), end, 20)
        for _ in range(60):
            self.move_pointer(end, (end[0] + 4, end[1]), 2)
        desktop.run("xdotool", "mouseup", "1")

    @staticmethod
    def move_pointer(start, end, steps):
        for step in range(1, steps + 1):
            point = [a + (b - a) * step // steps for a, b in zip(start, end)]
            desktop.run("xdotool", "mousemove", "--sync", *map(str, point))

    def test_reveal_opens_the_folder_in_the_file_manager(self):
        self.drop_named()
        self.addCleanup(desktop.output_of, "thunar", "--quit")
        row = self.velmora.rows()[0]
        desktop.click(*row.button("Show in File Manager"))
        window = desktop.wait_until(file_manager_windows, "the file manager's window", 30)[0]
        desktop.wait_until(
            lambda: desktop.FOLDER.name in desktop.window_property(window, "_NET_WM_NAME"),
            "the folder in the window's title",
        )


if __name__ == "__main__":
    unittest.main(verbosity=2)
