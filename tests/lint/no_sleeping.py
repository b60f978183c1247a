#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks that no test sleeps: a test waits for a signal, or for a condition with a deadline.

usage: no_sleeping.py ROOT
"""

import pathlib
import re
import sys

SLEEPS = re.compile(
    r"\b(qSleep|QThread::(m|u)?sleep|sleep_for|sleep_until|usleep|nanosleep)\s*\("
    r"|(?<![\w.])sleep\s*\("
    r"|\btime\.sleep\s*\("
)
# What waits between two looks at a condition with a deadline, and what makes a disk slow.
MAY_SLEEP = {"tests/world/desktop.py", "tests/world/SlowDisk.cpp"}


def main():
    root = pathlib.Path(sys.argv[1])
    everything = sorted((root / "tests").rglob("*"))
    tests = [path for path in everything if path.suffix in (".cpp", ".h", ".py")]
    complaints = [
        f"{name}:{number}: {line.strip()}"
        for path in tests
        for name in [path.relative_to(root).as_posix()]
        if name not in MAY_SLEEP and not name.startswith("tests/lint/")
        for number, line in enumerate(path.read_text().splitlines(), start=1)
        if SLEEPS.search(line)
    ]
    if not tests:
        sys.exit(f"no tests below {root}")
    print("\n".join(complaints) or f"{len(tests)} files do not sleep")
    sys.exit(1 if complaints else 0)


if __name__ == "__main__":
    main()
