#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks the parts of the macOS bundle: its description and its icon.

usage: macos_bundle.py ROOT DRAW_ICON
"""

import pathlib
import plistlib
import re
import struct
import subprocess
import sys
import tempfile
import unittest

ROOT, DRAW_ICON = pathlib.Path(sys.argv[1]), sys.argv[2]
CMAKE = {"MACOSX_BUNDLE_EXECUTABLE_NAME": "Velmora", "PROJECT_VERSION": "1.2.3",
         "CMAKE_OSX_DEPLOYMENT_TARGET": "13.0"}
# Every size that the Dock and the Finder show, in pixels, by its type.
SIZES = {b"icp4": 16, b"icp5": 32, b"ic11": 32, b"ic12": 64, b"ic07": 128, b"ic08": 256,
         b"ic13": 256, b"ic09": 512, b"ic14": 512, b"ic10": 1024}


def description():
    text = (ROOT / "packaging/macos/Info.plist.in").read_text()
    return plistlib.loads(re.sub(r"\$\{(\w+)\}", lambda match: CMAKE[match[1]], text).encode())


def blocks(content):
    while content:
        kind, size = struct.unpack_from(">4sI", content)
        yield kind, content[8:size]
        content = content[size:]


class MacosBundle(unittest.TestCase):
    def test_the_description_has_the_programs_identifier_version_and_oldest_system(self):
        found = description()
        identity = (ROOT / "core/VelmoraIdentity.h").read_text()
        self.assertIn(f'"{found["CFBundleIdentifier"]}"', identity)
        self.assertEqual(found["CFBundleShortVersionString"], CMAKE["PROJECT_VERSION"])
        oldest = re.search(r"CMAKE_OSX_DEPLOYMENT_TARGET ([\d.]+)",
                           (ROOT / "CMakeLists.txt").read_text())
        self.assertEqual(oldest[1], "13.0")
        self.assertEqual(found["LSMinimumSystemVersion"], oldest[1])
        self.assertTrue(found["NSRequiresAquaSystemAppearance"])

    def test_every_folder_that_the_system_guards_has_its_reason(self):
        found = description()
        for place in ("DesktopFolder", "DocumentsFolder", "DownloadsFolder", "RemovableVolumes",
                      "NetworkVolumes"):
            self.assertGreater(len(found[f"NS{place}UsageDescription"]), 20)

    def test_the_icon_has_every_size_and_is_not_empty(self):
        with tempfile.TemporaryDirectory() as folder:
            icon = pathlib.Path(folder, "Velmora.icns")
            subprocess.run([DRAW_ICON, ROOT / "style/VelmoraLogo.svg", icon], check=True)
            content = icon.read_bytes()
        self.assertEqual(content[:4], b"icns")
        self.assertEqual(struct.unpack_from(">I", content, 4)[0], len(content))
        found = dict(blocks(content[8:]))
        self.assertEqual(set(found), set(SIZES))
        for kind, size in SIZES.items():
            self.assertEqual(found[kind][:8], b"\x89PNG\r\n\x1a\n")
            self.assertEqual(struct.unpack_from(">II", found[kind], 16), (size, size))
        # A picture of a single colour takes almost no space.
        self.assertGreater(len(found[b"ic10"]), 4000)


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
