#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks that every source and script says under which licence it is.

usage: licensed.py ROOT
"""

import pathlib
import sys

LINE = "SPDX-License-Identifier: MIT"
SUFFIXES = (".h", ".cpp", ".mm", ".py", ".cmake")


def is_source(path):
    if path.suffix in SUFFIXES or path.name == "CMakeLists.txt":
        return True
    return not path.suffix and path.is_file() and path.read_bytes().startswith(b"#!")


def main():
    root = pathlib.Path(sys.argv[1])
    sources = [
        path
        for folder in sorted(root.iterdir())
        if folder.is_dir() and folder.name != "build" and not folder.name.startswith(".")
        for path in sorted(folder.rglob("*"))
        if is_source(path)
    ]
    if not sources:
        sys.exit(f"no sources below {root}")
    missing = [
        str(path.relative_to(root))
        for path in sources
        if not any(LINE in line for line in path.read_text().splitlines()[:2])
    ]
    print("\n".join(missing) or f"{len(sources)} files name their licence")
    sys.exit(1 if missing else 0)


if __name__ == "__main__":
    main()
