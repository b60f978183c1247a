#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Which names the command finds, and how it prints them. It touches nothing meanwhile."""

import base64
import json
import os
import pathlib
import struct
import subprocess
import unittest
import zlib

from command_case import COMMAND, PAGES, CommandCase, digests, tool_name

LOG = pathlib.Path("/tmp/Velmora.log")


def chunk(kind, content):
    """A part of a PNG file; the first one, of 25 bytes, follows the signature's eight."""
    return (struct.pack(">I", len(content)) + kind + content +
            struct.pack(">I", zlib.crc32(kind + content)))


class Names(CommandCase):
    def test_one_line_a_picture_and_nothing_is_touched(self):
        for number in range(4):
            self.put(tool_name(number), number)
        before = digests(self.folder)
        self.assertEqual(self.lines("."),
                         [[f"./{tool_name(number)}", f"./{name}"]
                          for number, name in enumerate(PAGES)])
        self.assertEqual(digests(self.folder), before)
        self.assertEqual(self.journals(), [])

    def test_the_application_comes_first_in_the_name(self):
        self.put(tool_name(1))
        self.assertEqual(self.lines("--app", "Google Chrome", tool_name(1)),
                         [[tool_name(1), "chrome-quarterly-budget-meeting.png"]])

    def test_the_application_may_stand_in_the_picture_file(self):
        page = self.page().read_bytes()
        (self.folder / tool_name(1)).write_bytes(
            page[:33] + chunk(b"tEXt", b"windowTitle\0Budget - Mozilla Firefox") + page[33:])
        self.assertEqual(self.lines(tool_name(1)),
                         [[tool_name(1), "mozilla-quarterly-budget-meeting.png"]])
        self.assertEqual(self.lines("--app", "Editor", tool_name(1)),
                         [[tool_name(1), "editor-quarterly-budget-meeting.png"]])

    def test_the_order_is_that_of_the_arguments(self):
        for number in range(12):
            self.put(tool_name(number), number)
        arguments = [tool_name(number) for number in (7, 3, 11, 0, 9, 4)]
        self.assertEqual([line[0] for line in self.lines(*arguments)], arguments)

    def test_a_picture_named_twice_is_read_once(self):
        self.put(tool_name(1))
        self.assertEqual(len(self.lines(tool_name(1), tool_name(1))), 1)

    def test_a_folder_is_its_own_pictures_alone(self):
        self.put(tool_name(1))
        below = self.folder / "below"
        below.mkdir()
        self.put(tool_name(2), 1, below)
        self.put("." + tool_name(3), 2)
        (self.folder / "Screenshot from 2024-01-01 10-11-12.txt").write_text("no picture")
        (self.folder / tool_name(4)).mkdir()
        out = self.lines(str(self.folder) + "/")
        self.assertEqual(out, [[f"{self.folder}/{tool_name(1)}",
                                f"{self.folder}/quarterly-budget-meeting.png"]])

    def test_names_that_somebody_chose_are_left_alone(self):
        self.put("holiday.png")
        self.put(tool_name(1), 1)
        out, err = self.run_command(".")
        self.assertEqual(out.decode(), f"./{tool_name(1)}\t./alpine-bakery-orders.png\n")
        self.assertIn(b"1 picture was skipped", err)
        out, err = self.run_command("holiday.png")
        self.assertEqual(out, b"")
        self.assertIn(b"--all", err)
        self.assertEqual([line[0] for line in self.lines("--all", ".")],
                         [f"./{tool_name(1)}", "./holiday.png"])

    def test_a_picture_without_text_keeps_its_name(self):
        blank = self.folder / tool_name(1)
        subprocess.run(["convert", "-size", "300x200", "xc:white", f"png:{blank}"], check=True)
        self.assertEqual(self.lines("."), [[f"./{tool_name(1)}"] * 2])
        self.assertEqual(self.lines("--app", "Safari", "."), [[f"./{tool_name(1)}", "./safari.png"]])

    def test_taken_names_get_counters(self):
        self.put("quarterly-budget-meeting.png", 1)
        for number in range(3):
            self.put(tool_name(number), 0)
        self.assertEqual([line[1] for line in self.lines(".")],
                         [f"./quarterly-budget-meeting-{count}.png" for count in (2, 3, 4)])

    def test_all_formats_are_read(self):
        for format in ("jpg", "webp", "tiff", "heic"):
            name = tool_name(1).replace(".png", f".{format}")
            subprocess.run(["convert", self.page(), self.folder / name], check=True)
            self.assertEqual(self.lines(name), [[name, f"quarterly-budget-meeting.{format}"]])

    def test_names_come_from_standard_input(self):
        for number in range(3):
            self.put(tool_name(number), number)
        asked = [tool_name(2), tool_name(0)]
        found = self.lines("-", input="\n".join(asked).encode() + b"\n")
        self.assertEqual([line[0] for line in found], asked)
        self.assertEqual(self.lines("-", input=b""), [])

    def test_zero_bytes_part_names_on_both_sides(self):
        path = b"sub\nfolder/" + os.fsencode(tool_name(1))
        os.mkdir(os.fsencode(self.folder) + b"/sub\nfolder")
        self.put(path)
        out, _ = self.run_command("-0", "-", input=path + b"\0")
        self.assertEqual(out, path + b"\0sub\nfolder/quarterly-budget-meeting.png\0")

    def test_control_characters_are_escaped_in_lines(self):
        folder = b"a\nb\tc\\d\x1b[1m\xc2\x9b"
        os.mkdir(os.path.join(os.fsencode(self.folder), folder))
        self.put(folder + b"/" + os.fsencode(tool_name(1)))
        out, _ = self.run_command(folder)
        shown = rb"a\nb\tc\\d\033[1m\302\233/"
        self.assertEqual(out, shown + os.fsencode(tool_name(1)) + b"\t" + shown +
                         b"quarterly-budget-meeting.png\n")

    def test_json_is_one_object_a_line(self):
        self.put(tool_name(1))
        out, _ = self.run_command("--json", ".", "gone.png", status=1)
        objects = [json.loads(line) for line in out.splitlines()]
        self.assertEqual(objects, [
            {"file": "gone.png", "error": "No such file or directory"},
            {"old": f"./{tool_name(1)}", "new": "./quarterly-budget-meeting.png",
             "renamed": False}])

    def test_names_that_are_no_utf_8_survive(self):
        name = b"caf\xe9.png"
        self.put(name)
        out, _ = self.run_command("--all", name)
        self.assertEqual(out, name + b"\tquarterly-budget-meeting.png\n")
        out, _ = self.run_command("--all", "-0", ".")
        self.assertEqual(out.split(b"\0")[0], b"./" + name)
        out, _ = self.run_command("--all", "--json", ".")
        self.assertEqual(base64.b64decode(json.loads(out)["oldBase64"]), b"./" + name)

    def test_text_is_printed_in_place_of_names(self):
        self.put("holiday.png")
        self.put(tool_name(1), 1)
        out, _ = self.run_command("--text", "holiday.png")
        self.assertEqual(out.decode(), "Quarterly Budget Meeting\n")
        self.assertEqual(self.lines("--text", "."),
                         [[f"./{tool_name(1)}", "Alpine Bakery Orders"],
                          ["./holiday.png", "Quarterly Budget Meeting"]])
        out, _ = self.run_command("--text", "-0", "holiday.png")
        self.assertEqual(out, b"holiday.png\0Quarterly Budget Meeting\0")
        out, _ = self.run_command("--text", "--json", "holiday.png")
        self.assertEqual(json.loads(out), {"file": "holiday.png",
                                           "lines": ["Quarterly Budget Meeting"]})

    def test_the_diagnostic_log_is_not_written(self):
        self.assertNotIn(bytes(LOG), COMMAND.read_bytes())

    def test_the_program_needs_no_widgets(self):
        libraries = subprocess.run(["ldd", COMMAND], check=True, capture_output=True).stdout
        self.assertIn(b"libQt6Gui", libraries)
        self.assertNotIn(b"libQt6Widgets", libraries)


if __name__ == "__main__":
    unittest.main(verbosity=2)
