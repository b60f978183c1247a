#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Measures the first index of old screenshots: how many are read a second, with how much of the
processor, and whether rows are painted later meanwhile. Rows with and without the reading are
measured in turn.

usage: tests/world/run-in-world bench/first_index.py BUILD [PICTURES [ROWS]]
"""

import os
import pathlib
import shutil
import sqlite3
import statistics
import sys
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "tests" / "world"))

import desktop  # noqa: E402

PICTURES = 1000
ROWS = 40
BLOCKS = 4
OLD_AGE_SECONDS = 30 * 24 * 3600
PARAGRAPH = "The harvest was better than anybody had hoped, says the treasurer. "
DATABASE = pathlib.Path(os.environ["XDG_DATA_HOME"], "velmora", "search.db")
READING_SECONDS = 600


def read_pictures():
    """How many pictures have been read."""
    if not DATABASE.exists():
        return 0
    with sqlite3.connect(f"file:{DATABASE}?mode=ro", uri=True) as database:
        try:
            return database.execute("SELECT sum(is_read) FROM screenshots").fetchone()[0] or 0
        except sqlite3.OperationalError:
            return 0


def wait_for_more(count, seconds=READING_SECONDS):
    before = read_pictures()
    desktop.wait_until(lambda: read_pictures() >= before + count, "a picture has been read", seconds)


def fill_folder(tools, count):
    """Screenshots of a full page each, a month old. Their names are not taken for those that the
    program gives."""
    then = time.time() - OLD_AGE_SECONDS
    page = desktop.HOME / "full-page.png"
    tools.save_page("Quarterly Budget Review Meeting", PARAGRAPH * 20, page)
    for number in range(count):
        path = desktop.FOLDER / f"Screenshot old {number:04}.png"
        shutil.copy(page, path)
        os.utime(path, (then, then))


def rows(build, picture, count, before_each):
    """The milliseconds from a finished file to its visible row, of so many screenshots."""
    values = []
    for _ in range(count):
        before_each()
        out = desktop.run(build / "bench" / "row_latency", desktop.FOLDER, picture, "1",
                          timeout=120)
        values.append(float(out.split()[1]))
    return values


def started(build, consent):
    desktop.save_settings(searchConsent=consent)
    return desktop.Velmora(build, accessible=False).start().close_welcome_window()


def report(name, values):
    values = sorted(values)
    print(f"row painted, {name:<22} median {statistics.median(values):7.1f} ms, 95th percentile "
          f"{values[int(0.95 * len(values))]:7.1f} ms ({len(values)} rows)", flush=True)


def main():
    build = pathlib.Path(sys.argv[1])
    given = [int(each) for each in sys.argv[2:]]
    pictures, count = given + [PICTURES, ROWS][len(given):]
    tools = desktop.Tools(build)
    picture = desktop.HOME / "page.png"
    tools.save_page("Quarterly Budget Review Meeting", PARAGRAPH, picture)
    fill_folder(tools, pictures)
    print(f"load {os.getloadavg()[0]:.1f} on {os.cpu_count()} cores", flush=True)

    velmora = started(build, "given")
    desktop.wait_until(lambda: read_pictures() > 0, "the first has been read", READING_SECONDS)
    before, used, start = read_pictures(), velmora.processor_seconds(), time.monotonic()
    desktop.let_pass(60)
    seconds = time.monotonic() - start
    done = read_pictures() - before
    used = velmora.processor_seconds() - used
    velmora.stop()
    print(f"{done / seconds:.2f} pictures a second, {used / max(1, done):.2f} s of processor time "
          f"each, {100 * used / seconds:.0f} % of a core", flush=True)

    measured = {"while reading": [], "without reading": []}
    for _ in range(BLOCKS):
        velmora = started(build, "given")
        measured["while reading"] += rows(build, picture, count // BLOCKS,
                                          lambda: wait_for_more(1))
        velmora.stop()
        velmora = started(build, "refused")
        measured["without reading"] += rows(build, picture, count // BLOCKS,
                                            lambda: desktop.let_pass(4))
        velmora.stop()
    for name, values in measured.items():
        report(name, values)
    print(f"load {os.getloadavg()[0]:.1f}")


if __name__ == "__main__":
    main()
