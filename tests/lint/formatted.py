#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks that every source is formatted as .clang-format says.

usage: formatted.py ROOT CLANG-FORMAT
"""

import pathlib
import shutil
import subprocess
import sys


def main():
    root, clang_format = pathlib.Path(sys.argv[1]), sys.argv[2]
    if not shutil.which(clang_format):
        sys.exit(f"{clang_format} is missing; its package is in scripts/packages.txt")
    sources = [
        path
        for folder in sorted(root.iterdir())
        if folder.is_dir() and folder.name != "build" and not folder.name.startswith(".")
        for path in sorted(folder.rglob("*"))
        if path.suffix in (".h", ".cpp", ".mm")
    ]
    if not sources:
        sys.exit(f"no sources below {root}")
    sys.exit(subprocess.run([clang_format, "--dry-run", "--Werror", *sources]).returncode)


if __name__ == "__main__":
    main()
