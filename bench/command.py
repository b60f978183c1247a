#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Measures velmora-name: pictures a second with one core and with two, beside the program tesseract
on whole pages of the same files in turn with it, and the private memory that it takes.

usage: bench/command FOLDER [MEASUREMENT...]     throughput, memory, many; without names all of them

FOLDER holds pictures: PNG or JPEG, since tesseract reads no others here.
"""

import os
import pathlib
import statistics
import subprocess
import sys
import tempfile
import threading
import time

BUILD = pathlib.Path(os.environ["VELMORA_BUILD"])
COMMAND = BUILD / "command" / "velmora-name"
ROUNDS = 3
MANY = 10_000
TITLES = ("Quarterly Budget Meeting", "Alpine Bakery Orders", "Coastal Castle Tour")
SAMPLE_SECONDS = 0.01
# One engine per core is faster than one engine on all cores.
ENVIRONMENT = {**os.environ, "OMP_THREAD_LIMIT": "1", "LC_ALL": "C.UTF-8"}


def on_cores(count, command):
    return ["taskset", "--cpu-list", ",".join(map(str, range(count))), *map(str, command)]


def seconds_of(command, names):
    """How long the command takes when it gets these names on standard input."""
    start = time.monotonic()
    subprocess.run(command, input="\0".join(names).encode(), check=True, env=ENVIRONMENT,
                   stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    return time.monotonic() - start


def throughput(folder):
    names = sorted(str(path) for path in folder.iterdir() if path.suffix in (".png", ".jpg"))
    for cores in (1, 2):
        ours = on_cores(cores, [COMMAND, "--all", "-0", "-"])
        text = on_cores(cores, [COMMAND, "--text", "-0", "-"])
        page = on_cores(cores, ["xargs", "-0", "--max-args=1", f"--max-procs={cores}",
                                "sh", "-c", 'exec tesseract "$0" - -l eng'])
        seconds_of(ours, names)
        rounds = [[len(names) / seconds_of(command, names) for command in (ours, text, page)]
                  for _ in range(ROUNDS)]
        for index, label in enumerate(("names", "all text", "tesseract")):
            rate = statistics.median(each[index] for each in rounds)
            print(f"{cores} core(s), {label:<10}{rate:8.2f} pictures/s")
        ratio = statistics.median(each[0] / each[2] for each in rounds)
        print(f"{cores} core(s), names to tesseract: {ratio:.1f} times   goal >= 10: "
              f"{'met' if ratio >= 10 else 'MISSED'}")


def private_bytes(pid):
    try:
        text = pathlib.Path(f"/proc/{pid}/smaps_rollup").read_text()
    except OSError:
        return 0
    return sum(int(line.split()[1]) * 1024 for line in text.splitlines()
               if line.startswith("Private_"))


def run_watched(*arguments):
    """The most private memory that the command had, for each tenth of its output."""
    process = subprocess.Popen(on_cores(2, [COMMAND, *arguments]), stdout=subprocess.PIPE,
                               stderr=subprocess.DEVNULL, env=ENVIRONMENT)
    lines = []
    reader = threading.Thread(target=lambda: lines.extend(process.stdout))
    reader.start()
    samples = []
    while process.poll() is None:
        samples.append((len(lines), private_bytes(process.pid)))
        time.sleep(SAMPLE_SECONDS)
    reader.join()
    if process.returncode != 0 or not lines:
        sys.exit(f"the command failed: {process.returncode}")
    tenth = max(1, len(lines) / 10)
    peaks = [max((size for done, size in samples if int(done / tenth) == part), default=0)
             for part in range(10)]
    return [peak / 1e6 for peak in peaks], len(lines)


def memory(folder):
    for mode in ("--all", "--text"):
        peaks, _ = run_watched(mode, folder)
        print(f"private memory, two cores, {mode}: {max(peaks):.0f} MB   goal < 150 MB: "
              f"{'met' if max(peaks) < 150 else 'MISSED'}")


def many(_):
    with tempfile.TemporaryDirectory() as home:
        ENVIRONMENT["XDG_STATE_HOME"] = home
        folder = pathlib.Path(home, "pictures")
        folder.mkdir()
        pages = [pathlib.Path(home, f"{number}.png") for number in range(len(TITLES))]
        for page, title in zip(pages, TITLES):
            subprocess.run(["convert", "-font", "DejaVu-Sans", "-pointsize", "28",
                            f"label:{title}", "-bordercolor", "white", "-border", "30", page],
                           check=True)
        for number in range(MANY):
            hours, minutes = divmod(number // 60, 60)
            day, hours = divmod(hours, 24)
            os.link(pages[number % len(pages)], folder / f"Screenshot from 2024-03-{day + 1:02} "
                    f"{hours:02}-{minutes:02}-{number % 60:02}.png")
        start = time.monotonic()
        peaks, count = run_watched("--rename", folder)
        seconds = time.monotonic() - start
    print(f"{count} files renamed in {seconds:.0f} s; private memory in each tenth of them, MB: "
          + " ".join(f"{peak:.1f}" for peak in peaks))


def main():
    sys.stdout.reconfigure(line_buffering=True)
    folder, *wanted = sys.argv[1:]
    for name in wanted or ("throughput", "memory", "many"):
        {"throughput": throughput, "memory": memory, "many": many}[name](pathlib.Path(folder))


if __name__ == "__main__":
    main()
