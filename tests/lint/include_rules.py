#!/usr/bin/env python3
"""Checks that each room includes only the rooms that it may, and always from the root.

usage: include_rules.py ROOT
"""

import pathlib
import re
import sys

MAY_INCLUDE = {
    "core": set(),
    "platform": {"core"},
    "imaging": {"core", "platform"},
    "style": {"core"},
    "detection": {"core", "platform"},
    "naming": {"core", "platform", "imaging"},
    "files": {"core", "platform", "imaging", "style"},
    "tray": {"core", "platform", "imaging", "style", "naming", "files"},
    "app": {"core", "platform", "imaging", "style", "detection", "naming", "files", "tray"},
}
SYSTEM_FOLDERS = ("linux", "macos")
QUOTED_INCLUDE = re.compile(r'^\s*#\s*include\s*"([^"]+)"')


def complaints_of(root, source):
    own = source.relative_to(root)
    room = own.parts[0]
    in_system_folder = len(own.parts) > 2 and own.parts[1] in SYSTEM_FOLDERS
    for number, line in enumerate(source.read_text().splitlines(), start=1):
        match = QUOTED_INCLUDE.match(line)
        if not match or match.group(1).endswith(".moc"):
            continue
        included = pathlib.PurePosixPath(match.group(1))
        target = included.parts[0]
        place = f"{own}:{number}"
        if target not in MAY_INCLUDE:
            yield f'{place}: "{included}" is not written from the root'
        elif target != room and target not in MAY_INCLUDE[room]:
            yield f"{place}: {room}/ may not include {target}/"
        elif len(included.parts) > 2 and included.parts[1] in SYSTEM_FOLDERS and not in_system_folder:
            yield f"{place}: neutral code may not include {included.parent}/"


def main():
    root = pathlib.Path(sys.argv[1])
    sources = [
        path
        for room in MAY_INCLUDE
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
