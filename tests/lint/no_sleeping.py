#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Checks that no test sleeps: a test waits for a signal, or for a condition with a deadline. Where
nothing is to happen for a while, tests/world/Waiting.h and desktop.stays say so.

usage: no_sleeping.py ROOT
       no_sleeping.py --self-test
"""

import pathlib
import re
import sys

SLEEPS = re.compile(
    r"""
    \b(QTest::)?(qSleep|qWait)\s*\(
    | \bQThread::(m|u)?sleep\s*\(
    | \b(sleep_for|sleep_until|usleep|nanosleep|clock_nanosleep)\s*\(
    | (?<![\w.])sleep\s*\(
    | \b(time|asyncio)\.sleep\s*\(
    | \bfrom\s+time\s+import\b.*\bsleep\b
    # A command that sleeps.
    | ["']sleep["']
    # A semaphore or a lock that nobody releases.
    | \bQSemaphore\s*(\(\s*0?\s*\)|\{\s*0?\s*\})\s*\.\s*tryAcquire\s*\(
    | ^\s*[\w.>-]+(\.|->)(tryAcquire|tryLock|try_acquire_for|try_lock_for)\s*\([^;]*\d[^;]*\)\s*;
    | VERIFY2?\s*\(\s*!\s*[\w.>-]+(\.|->)(tryAcquire|try_acquire_for)\s*\(\s*\d+\s*,
    | \b(threading\.)?Event\s*\(\s*\)\s*\.\s*wait\s*\(
    | \bselect\.select\s*\(\s*\[\s*\]\s*,\s*\[\s*\]\s*,\s*\[\s*\]
    | \bpoll\s*\(\s*(nullptr|NULL)\s*,\s*0
    | \bselect\s*\(\s*0\s*,\s*(nullptr|NULL)
    # A condition that always holds.
    | \bstays\s*\(\s*lambda\s*:\s*True\b
    | \bwait_until\s*\(\s*lambda\s*:\s*time\.monotonic
    | \bqWaitFor\s*\(\s*\[[^\]]*\]\s*(\(\s*\))?\s*\{\s*return\s+false
    | \bsingleShot\s*\([^;]*&QEventLoop::quit
    """,
    re.VERBOSE,
)
# What waits between two looks at a condition with a deadline, what lets time pass for tests that are
# about time, and what makes a disk slow.
MAY_SLEEP = {"tests/world/desktop.py", "tests/world/Waiting.h", "tests/world/SlowDisk.cpp"}

FOUND = """
QTest::qWait(50);
QTest::qSleep(5);
QThread::msleep(5);
std::this_thread::sleep_for(5ms);
time.sleep(1)
from time import sleep
subprocess.run(["sleep", "1"])
QSemaphore().tryAcquire(1, 400);
mayEnd.tryAcquire(1, 300);
QVERIFY(!never.tryAcquire(1, 300));
threading.Event().wait(2)
select.select([], [], [], 0.5)
::poll(nullptr, 0, 100);
desktop.stays(lambda: True, 1)
QTest::qWaitFor([] { return false; }, 100);
QTimer::singleShot(100, &loop, &QEventLoop::quit);
"""
NOT_FOUND = """
QVERIFY(hasBegun.tryAcquire(1, 10000));
m_gate.tryAcquire(m_gate.available());
while (!gate.tryAcquire(1, 5)) {
QVERIFY(QTest::qWaitFor([&] { return changes.size() > before; }));
while not killed.wait(pause):
desktop.stays(lambda: row.filename == "m", 4)
QVERIFY(writer.waitForFinished(10'000));
int sleepsOfWatcher()
"""


def self_test():
    for text, wanted in ((FOUND, True), (NOT_FOUND, False)):
        for line in text.strip().splitlines():
            if bool(SLEEPS.search(line)) != wanted:
                sys.exit(f"{'not found' if wanted else 'found'}: {line}")
    print("every kind of sleep is found")


def main():
    if sys.argv[1] == "--self-test":
        self_test()
        return
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
