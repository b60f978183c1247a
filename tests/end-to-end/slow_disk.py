#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Settings and log on a slow disk: the main thread never touches it, and nothing is lost."""

import os
import pathlib
import tempfile
import unittest

import case
import desktop

SETTINGS_FOLDER = pathlib.Path(os.environ["XDG_CONFIG_HOME"]) / "velmora"
EACH_CALL_MILLISECONDS = 60


class SlowDisk(unittest.TestCase):
    def setUp(self):
        self.tools = desktop.Tools(case.BUILD)
        desktop.run("rm", "-rf", desktop.FOLDER, SETTINGS_FOLDER)
        desktop.FOLDER.mkdir()
        desktop.save_settings(trayDuration="untilDismissed")
        outside = tempfile.TemporaryDirectory(dir=desktop.HOME)
        self.addCleanup(outside.cleanup)
        self.report = pathlib.Path(outside.name) / "report"
        slow = [SETTINGS_FOLDER, desktop.LOG]
        environment = desktop.slow_disk(
            case.BUILD, slow, EACH_CALL_MILLISECONDS, report=self.report
        )
        self.velmora = desktop.Velmora(case.BUILD, environment=environment)
        self.addCleanup(self.velmora.stop)

    def calls_of_the_main_thread(self):
        """Its calls on the settings and on the log."""
        places = (str(SETTINGS_FOLDER), str(desktop.LOG))
        lines = self.report.read_text().splitlines()
        return [line for line in lines if line.split(" ", 1)[1].startswith(places)]

    def test_the_main_thread_leaves_settings_and_log_alone(self):
        self.velmora.start().close_welcome_window()
        path = desktop.FOLDER / "Screenshot.png"
        self.tools.save_page("Slow Disk", "All is well.", path)
        row = desktop.wait_until(self.velmora.rows, "a row")[0]
        desktop.wait_until(
            lambda: self.velmora.log.count(f"detected {path}"), "the screenshot is in the log"
        )
        self.velmora.stop()
        self.assertEqual(self.velmora.exit_code, 0)
        self.assertEqual(self.calls_of_the_main_thread(), [])
        self.assertIn(f"{desktop.FOLDER}/", desktop.read_settings()["General"]["recentScreenshots"])
        self.assertTrue(row.filename.endswith(".png"))


if __name__ == "__main__":
    unittest.main(verbosity=2)
