#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Prints what bench/run measures, each figure with its goal, and then all of them again as lines of
"name value unit" for programs.

usage: tests/world/run-in-world bench/measure.py BUILD [MEASUREMENT...]
"""

import os
import pathlib
import shutil
import statistics
import sys
import tempfile
import time

sys.path.insert(0, str(pathlib.Path(__file__).resolve().parents[1] / "tests" / "world"))

import desktop  # noqa: E402

RUNS = 100
STARTS = 20
IDLE_SECONDS = 30
OLD_FILES = (100, 10_000, 100_000)
OLD_AGE_SECONDS = 30 * 24 * 3600
SETTLE_SECONDS = 5
# The program releases what it keeps ready after a minute without a screenshot.
LONG_REST_SECONDS = 70
TITLE = "Quarterly Budget Review Meeting"
PARAGRAPH = "The harvest was better than anybody had hoped, says the treasurer."
NAMING_SECONDS = 30


class Bench:
    def __init__(self, build):
        self.build = pathlib.Path(build)
        self.tools = desktop.Tools(build)
        self.picture = desktop.HOME / "page.png"
        self.tools.save_page(TITLE, PARAGRAPH, self.picture)
        self.figures = []

    def report(self, name, value, unit, goal=None):
        """Prints one line for people; the same figure for programs comes at the end."""
        verdict = ""
        if goal is not None:
            verdict = f"   goal < {goal:g} {unit}: {'met' if value < goal else 'MISSED'}"
        print(f"{name:<34}{value:>9.2f} {unit}{verdict}", flush=True)
        self.figures.append(f"{name} {value:.3f} {unit}")

    def fresh_folder(self):
        shutil.rmtree(desktop.FOLDER)
        desktop.FOLDER.mkdir()

    def started(self):
        velmora = desktop.Velmora(self.build, accessible=False).start().close_welcome_window()
        rest(SETTLE_SECONDS)
        return velmora

    def latency(self):
        self.fresh_folder()
        velmora = self.started()
        program = self.build / "bench" / "row_latency"
        try:
            out = desktop.run(program, desktop.FOLDER, self.picture, str(RUNS), timeout=1200)
        finally:
            velmora.stop()
        runs = [tuple(map(float, line.split())) for line in out.decode().splitlines()]
        for name, column, goals in (("tray-change", 0, (None, None)), ("row-painted", 1, (30, 60))):
            values = sorted(run[column] for run in runs)
            self.report(f"{name}-median", statistics.median(values), "ms", goals[0])
            self.report(f"{name}-p95", values[int(0.95 * len(values))], "ms", goals[1])

    def idle(self):
        for count in OLD_FILES:
            self.fresh_folder()
            fill_with_old_files(count)
            velmora = self.started()
            before = velmora.processor_seconds()
            start = time.monotonic()
            rest(IDLE_SECONDS)
            used = velmora.processor_seconds() - before
            share = 100 * used / (time.monotonic() - start)
            velmora.stop()
            self.report(f"idle-processor-{count}-files", share, "%", 0.3)

    def start(self):
        self.fresh_folder()
        values = []
        for _ in range(STARTS):
            begin = time.monotonic()
            velmora = desktop.Velmora(self.build, accessible=False).start(look_again=0.0005)
            values.append(1000 * (time.monotonic() - begin))
            velmora.stop()
        self.report("start-to-watching-first", values[0], "ms")
        self.report("start-to-watching-median", statistics.median(values), "ms", 250)
        self.report("start-to-watching-p95", sorted(values)[int(0.95 * len(values))], "ms")

    def memory(self):
        self.fresh_folder()
        self.memory_alone()
        velmora = self.started()
        self.report("private-memory-at-rest", velmora.private_bytes() / 2**20, "MB")
        for number in range(1, 11):
            shutil.copy(self.picture, desktop.FOLDER / f"Screenshot {number}.png")
            desktop.wait_until(lambda: self.named_files() == number, "the name", NAMING_SECONDS)
        rest(SETTLE_SECONDS)
        self.report("private-memory-after-ten", velmora.private_bytes() / 2**20, "MB", 90)
        velmora.stop()

    def memory_alone(self):
        """As on a machine where no other program uses the same libraries: with copies of them that
        share no memory."""
        with tempfile.TemporaryDirectory() as folder:
            for library in self.libraries():
                shutil.copy(library, folder)
            velmora = desktop.Velmora(
                self.build, accessible=False, environment={"LD_LIBRARY_PATH": folder}
            )
            velmora.start().close_welcome_window()
            rest(SETTLE_SECONDS)
            self.report("private-memory-alone-at-start", velmora.private_bytes() / 2**20, "MB")
            rest(LONG_REST_SECONDS)
            self.report("private-memory-alone", velmora.private_bytes() / 2**20, "MB", 35)
            velmora.stop()

    def libraries(self):
        """All except the C library, which belongs to its loader."""
        linked = desktop.output_of("ldd", str(self.build / "app" / "velmora")).stdout.decode()
        paths = [line.partition("=> ")[2].split(" ")[0] for line in linked.splitlines()]
        own = ("/libc.so.6", "/libm.so.6")
        return [path for path in paths if path.startswith("/") and not path.endswith(own)]

    @staticmethod
    def named_files():
        names = desktop.pictures()
        return sum("-screen-" not in name and not name.startswith("Screenshot") for name in names)


def rest(seconds):
    """Waits until the program is at rest."""
    desktop.stays(lambda: True, seconds)


def fill_with_old_files(count):
    """Small files with picture names that were made a month ago."""
    then = time.time() - OLD_AGE_SECONDS
    for number in range(count):
        path = desktop.FOLDER / f"screenshot-{number:06}.png"
        path.touch()
        os.utime(path, (then, then))


def main():
    build, *wanted = sys.argv[1:]
    bench = Bench(build)
    for name in wanted or ("latency", "idle", "start", "memory"):
        getattr(bench, name)()
    print()
    print("\n".join(bench.figures))


if __name__ == "__main__":
    main()
