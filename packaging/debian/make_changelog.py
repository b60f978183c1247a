#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes CHANGELOG.md as Debian wants to read it. The days stand in the application's metadata.

usage: make_changelog.py SOURCE VERSION CHANGELOG     VERSION must be the newest
"""

import datetime
import pathlib
import re
import sys
import textwrap
import xml.etree.ElementTree

SOURCE, VERSION, CHANGELOG = pathlib.Path(sys.argv[1]), sys.argv[2], pathlib.Path(sys.argv[3])
TEAM = "The Velmora team <feedback@velmora.app>"


def days():
    metadata = xml.etree.ElementTree.parse(
        SOURCE / "packaging" / "app.velmora.Velmora.metainfo.xml")
    return {release.get("version"): datetime.date.fromisoformat(release.get("date"))
            for release in metadata.iter("release")}


def entry(version, text, day):
    points = [" ".join(point.split()) for point in re.split(r"^- ", text, flags=re.M)[1:]]
    lines = [textwrap.fill(point, 78, initial_indent="  * ", subsequent_indent="    ",
                           break_on_hyphens=False) for point in points]
    return "\n".join([f"velmora ({version}) unstable; urgency=medium", "", *lines, "",
                      f" -- {TEAM}  {day:%a, %d %b %Y} 00:00:00 +0000", ""])


def main():
    parts = re.split(r"^## (\S+).*$", (SOURCE / "CHANGELOG.md").read_text(), flags=re.M)
    versions = dict(zip(parts[1::2], parts[2::2]))
    if next(iter(versions), None) != VERSION:
        sys.exit(f"CHANGELOG.md does not begin with {VERSION}")
    when = days()
    CHANGELOG.write_text("\n".join(entry(version, text, when[version])
                                   for version, text in versions.items()))


if __name__ == "__main__":
    main()
