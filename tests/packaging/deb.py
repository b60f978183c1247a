#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks the Debian package with Debian's own tools, and installs and starts it in a clean root.

usage: deb.py BUILD
"""

import gzip
import os
import pathlib
import re
import shutil
import struct
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, str(pathlib.Path(__file__).parents[1] / "world"))

import clean_root  # noqa: E402
import desktop  # noqa: E402

BUILD = pathlib.Path(sys.argv[1])
ID = "app.velmora.Velmora"
SIZES = (16, 22, 24, 32, 48, 64, 128, 256, 512)
TITLE = "Quarterly Budget Review Meeting"


def output(*command):
    """The output of a command that must succeed."""
    done = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
    if done.returncode != 0:
        raise AssertionError(f"{command}: {done.stdout}")
    return done.stdout


def the_deb():
    found = sorted((BUILD / "package").glob("*.deb"))
    assert len(found) == 1, found
    return found[0]


class Deb(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.deb = the_deb()
        cls.files = pathlib.Path(tempfile.mkdtemp())
        cls.addClassCleanup(shutil.rmtree, cls.files)
        output("dpkg-deb", "--extract", cls.deb, cls.files)
        cls.share = cls.files / "usr" / "share"

    def field(self, name):
        return output("dpkg-deb", "--field", self.deb, name).strip()

    def test_its_name_tells_program_version_and_machine(self):
        version = re.search(r"project\(velmora VERSION ([\d.]+)",
                            (pathlib.Path(__file__).parents[2] / "CMakeLists.txt").read_text())[1]
        machine = output("dpkg", "--print-architecture").strip()
        self.assertEqual(self.deb.name, f"velmora_{version}_{machine}.deb")
        self.assertEqual(self.field("Package"), "velmora")

    def test_all_that_a_desktop_looks_for_is_in_it(self):
        for name in (f"applications/{ID}.desktop", f"dbus-1/services/{ID}.service",
                     f"metainfo/{ID}.metainfo.xml", f"icons/hicolor/scalable/apps/{ID}.svg",
                     f"icons/hicolor/symbolic/apps/{ID}-symbolic.svg", "doc/velmora/copyright"):
            self.assertTrue((self.share / name).is_file(), name)
        for program in ("velmora", "velmora-name"):
            self.assertTrue(os.access(self.files / "usr/bin" / program, os.X_OK), program)
            self.assertTrue((self.share / f"man/man1/{program}.1.gz").is_file(), program)
        self.assertEqual([path.name for path in self.files.iterdir()], ["usr"])

    def test_the_bus_is_told_where_the_program_will_stand(self):
        service = (self.share / f"dbus-1/services/{ID}.service").read_text()
        self.assertIn("\nExec=/usr/bin/velmora\n", service)

    def test_the_icon_is_there_in_every_size(self):
        for size in SIZES:
            content = (self.share / f"icons/hicolor/{size}x{size}/apps/{ID}.png").read_bytes()
            self.assertEqual(struct.unpack_from(">II", content, 16), (size, size))
            # A picture of a single colour takes almost no space.
            self.assertGreater(len(content), 12 * size)

    def test_the_program_is_stripped(self):
        sections = output("readelf", "--section-headers", "--wide", self.files / "usr/bin/velmora")
        self.assertNotIn(".symtab", sections)
        self.assertNotIn(".debug_info", sections)

    def test_its_libraries_are_dependencies(self):
        names = [group[0] for group in clean_root.wanted(self.field("Depends"))]
        for name in ("libqt6widgets6", "libqt6svg6", "libtesseract5", "libheif1", "libpng16-16"):
            self.assertIn(name, names)

    def test_what_opens_files_and_mail_is_recommended(self):
        self.assertIn("xdg-utils", self.field("Recommends"))

    def test_the_desktop_entry_is_valid(self):
        self.assertEqual(
            output("desktop-file-validate", self.share / f"applications/{ID}.desktop"), "")

    def test_the_metadata_are_valid_beside_the_files_that_they_name(self):
        output("appstreamcli", "validate-tree", "--no-net", self.files)

    def test_the_manual_says_what_the_program_is_and_has_no_mistake(self):
        page = self.share / "man/man1/velmora.1.gz"
        self.assertIn("velmora - names your screenshots", output("lexgrog", page))
        done = subprocess.run(["man", "--warnings", "-l", page], stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, text=True,
                              env=os.environ | {"MANWIDTH": "80", "LC_ALL": "C.UTF-8"})
        self.assertEqual((done.returncode, done.stderr), (0, ""))

    def test_the_changelog_is_the_one_of_the_sources(self):
        changelog = gzip.open(self.share / "doc/velmora/changelog.gz", "rt").read()
        self.assertTrue(changelog.startswith(f"velmora ({self.field('Version')}) "), changelog)
        self.assertIn("  * Renames and moves to the trash can be undone.\n", changelog)
        output("dpkg-parsechangelog", "-l", self.share / "doc/velmora/changelog.gz")

    def test_lintian_finds_no_error(self):
        done = subprocess.run(
            ["lintian", "--allow-root", "--fail-on", "error", "--tag-display-limit", "0", self.deb],
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        print(done.stdout)
        self.assertEqual(done.returncode, 0, done.stdout)
        self.assertNotIn("\nE: ", "\n" + done.stdout)


class Installed(unittest.TestCase):
    """The package where only its dependencies are installed."""

    def setUp(self):
        self.outside = pathlib.Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.outside)
        self.root = clean_root.CleanRoot(self.outside / "root")
        self.root.path.mkdir()

    def test_it_installs_starts_and_names_a_screenshot(self):
        if not self.root.is_possible():
            print("SKIP   : packaging.deb: this user may not mount file systems")
            self.skipTest("this user may not mount file systems")
        depends = output("dpkg-deb", "--field", the_deb(), "Depends")
        self.root.populate(clean_root.closure(depends))
        self.assertFalse((self.root.path / "usr/bin/python3").exists())
        succeeded, told = self.root.install(the_deb())
        self.assertTrue(succeeded, told)
        self.assertNotIn("depend", told)
        installed = output("dpkg-query", f"--admindir={self.root.path}/var/lib/dpkg", "--show",
                           "--showformat=${db:Status-Status}", "velmora")
        self.assertEqual(installed, "installed")

        home = self.root.path / "home/user"
        program = self.root.start("/usr/bin/velmora", HOME="/home/user", LANG="C.UTF-8",
                                  XDG_RUNTIME_DIR="/run/user", DISPLAY=os.environ["DISPLAY"])
        self.addCleanup(program.wait)
        self.addCleanup(program.terminate)
        log = self.root.path / "tmp/Velmora.log"
        desktop.wait_until(
            lambda: log.exists() and "watching /home/user/Desktop\n" in log.read_text(),
            "the program watches its folder", 30)
        desktop.wait_until(
            lambda: desktop.output_of("xdotool", "search", "--onlyvisible", "--name",
                                      "^Velmora$").stdout,
            "the welcome window", 30)
        picture = self.outside / "page.png"
        desktop.Tools(BUILD).save_page(TITLE, "The harvest was good.", picture)
        shutil.copy(picture, home / "Desktop/Screenshot.png")
        name = "quarterly-budget-review-meeting"
        desktop.wait_until(lambda: [each for each in desktop.pictures(home / "Desktop")
                                    if name in each],
                           f"{name} in {desktop.pictures(home / 'Desktop')}", 60)
        self.assertIsNone(program.poll())


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1], verbosity=2)
