#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks that each room includes only the rooms that it may, and always from the root.

usage: include_rules.py ROOT
"""

import pathlib
import re
import sys

MAY_INCLUDE = {
    "core": set(),
    "filesystem": {"core"},
    "recognition": {"core"},
    "platform": {"core", "filesystem"},
    "platform/linux": {"core", "filesystem", "platform", "recognition"},
    "platform/macos": {"core", "filesystem", "platform", "recognition"},
    "imaging": {"core", "filesystem", "platform"},
    "style": {"core"},
    "detection": {"core", "filesystem", "platform"},
    "naming": {"core", "filesystem", "platform", "imaging"},
    "search": {"core", "filesystem", "platform", "imaging", "naming"},
    "command": {"core", "filesystem", "platform", "imaging", "naming", "search"},
    "files": {"core", "filesystem", "platform", "imaging"},
    "files/recent": {"core", "filesystem", "platform", "imaging", "style", "search", "files"},
    "tray": {"core", "filesystem", "platform", "imaging", "style", "naming", "files"},
    "app/welcome": {"core", "filesystem", "platform", "imaging", "style", "detection", "files"},
    "app": {"core", "filesystem", "platform", "imaging", "style", "detection", "naming", "search",
            "files", "files/recent", "tray", "app/welcome"},
}
SYSTEM_FOLDERS = ("linux", "macos")
QUOTED_INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"')


def room_of(path):
    """The room that a file belongs to: the deepest folder of the table above it."""
    for depth in (2, 1):
        name = "/".join(path.parts[:depth])
        if len(path.parts) > depth and name in MAY_INCLUDE:
            return name
    return None


def complaints_of(root, source):
    own = source.relative_to(root)
    room = room_of(own)
    for number, line in enumerate(source.read_text().splitlines(), start=1):
        match = QUOTED_INCLUDE.match(line)
        if not match or match.group(1).endswith(".moc"):
            continue
        included = pathlib.PurePosixPath(match.group(1))
        target = room_of(included)
        place = f"{own}:{number}"
        if target is None:
            yield f'{place}: "{included}" is not written from the root'
        elif target != room and target not in MAY_INCLUDE[room]:
            yield f"{place}: {room}/ may not include {target}/"
        elif is_of_a_system(included) and not is_of_a_system(own):
            yield f"{place}: neutral code may not include {included.parent}/"


def is_of_a_system(path):
    """Whether the file is for one operating system: FileUrls.h is not, linux/copyFile.h is."""
    return len(path.parts) > 2 and path.parts[1] in SYSTEM_FOLDERS


def main():
    root = pathlib.Path(sys.argv[1])
    sources = [
        path
        for room in sorted({name.split("/")[0] for name in MAY_INCLUDE})
        for path in sorted((root / room).rglob("*"))
        if path.suffix in (".h", ".cpp", ".mm")
    ]
    if not sources:
        sys.exit(f"no sources below {root}")
    complaints = [text for source in sources for text in complaints_of(root, source)]
    print("\n".join(complaints) or f"{len(sources)} files keep the rules")
    sys.exit(1 if complaints else 0)


if __name__ == "__main__":
    main()
