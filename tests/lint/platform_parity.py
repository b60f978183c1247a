#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks that each system has all that neutral code asks of it: every maker and function that a
header of the seam declares is defined on each side, in a file of the same name that is built, and
no side has a service that the other lacks.

usage: platform_parity.py ROOT
"""

import pathlib
import re
import sys

SYSTEMS = ("linux", "macos")
ROOMS = ("core", "filesystem", "platform")
MAKER = re.compile(r"^std::unique_ptr<(\w+)> (make\1)\(\);", re.MULTILINE)
# A function at the beginning of a line, as a header of one function declares it.
FUNCTION = re.compile(r"^[\w:<>][\w:<>, ]*[ *&](\w+)\([^;{]*\);", re.MULTILINE)


def without_namespaces(text):
    """What stands in a namespace, a class or a struct is no function of the seam."""
    return re.sub(r"^(namespace|class|struct|enum)\b[^;]*?\{.*?^\}.*?$", "", text,
                  flags=re.MULTILINE | re.DOTALL)


def declared(header):
    text = without_namespaces(header.read_text())
    return {name for name in FUNCTION.findall(text)} | {match[1] for match in MAKER.findall(text)}


def sources_of(folder):
    """The files of one system by their names; those of subjects below it are its own affair."""
    return {path.stem: path for path in sorted(folder.iterdir())
            if path.suffix in (".cpp", ".mm")}


def defines(source, name):
    pattern = rf"^[\w:<>][\w:<>, ]*[ *&]{name}\([^;{{]*\)\s*\{{"
    return re.search(pattern, source.read_text(), re.MULTILINE) is not None


def is_built(room, system, name):
    above, own = room / "CMakeLists.txt", room / system / "CMakeLists.txt"
    return (any(f"{folder}/{name}" in above.read_text() for folder in ("${VELMORA_SYSTEM}", system))
            or (own.exists() and re.search(rf"(?<![\w/]){re.escape(name)}", own.read_text())))


def complaints_of(room):
    sides = {system: sources_of(room / system) for system in SYSTEMS}
    for stem in sorted(set().union(*sides.values())):
        header = room / f"{stem}.h"
        for system, sources in sides.items():
            place = f"{room.name}/{system}/{stem}"
            if stem not in sources:
                if header.exists():
                    yield f"{place} is missing"
                continue
            if not is_built(room, system, sources[stem].name):
                yield f"{place} is not in any CMakeLists.txt"
            names = declared(header) if header.exists() else set()
            for name in sorted(names):
                if not defines(sources[stem], name):
                    yield f"{place} does not define {name}()"
    if room.name == "platform":
        for header in sorted(room.glob("*.h")):
            if MAKER.search(header.read_text()) and header.stem not in sides[SYSTEMS[0]]:
                yield f"platform/{header.stem}.h has a maker that no system defines"


def main():
    root = pathlib.Path(sys.argv[1])
    found = [text for room in ROOMS for text in complaints_of(root / room)]
    count = sum(len(sources_of(root / room / system)) for room in ROOMS for system in SYSTEMS)
    print("\n".join(found) or f"{count} files of {len(SYSTEMS)} systems agree")
    sys.exit(1 if found else 0)


if __name__ == "__main__":
    main()
