#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""The tray as a window: its position, its rows, how long it stays."""

import time
import unittest

import case
import desktop

SCREEN_WIDTH, SCREEN_HEIGHT = 1600, 1000
MARGIN = 44


class Tray(case.EndToEnd):

    def test_a_new_row_follows_the_corner_setting(self):
        right = SCREEN_WIDTH - desktop.TRAY_WIDTH - MARGIN
        corners = {
            "bottomRight": lambda height: (right, SCREEN_HEIGHT - height - MARGIN),
            "topRight": lambda height: (right, MARGIN),
            "bottomLeft": lambda height: (MARGIN, SCREEN_HEIGHT - height - MARGIN),
            "topLeft": lambda height: (MARGIN, MARGIN),
        }
        for count, (corner, place) in enumerate(corners.items(), start=1):
            with self.subTest(corner):
                desktop.save_settings(trayPosition=corner)
                self.drop()
                height = desktop.TRAY_HEIGHTS[min(count, 3)]
                wanted = (*place(height), desktop.TRAY_WIDTH, height)
                desktop.wait_until(
                    lambda: (window := self.velmora.tray_window())
                    and desktop.geometry(window) == wanted,
                    f"the tray at {wanted}",
                )

    def test_the_panel_stays_above_and_out_of_the_way(self):
        self.drop()
        self.wait_for_rows(1)
        window = self.velmora.tray_window()
        states = desktop.window_property(window, "_NET_WM_STATE")
        for state in ("ABOVE", "SKIP_TASKBAR", "SKIP_PAGER"):
            self.assertIn(f"_NET_WM_STATE_{state}", states)
        self.assertEqual(desktop.window_property(window, "_NET_WM_DESKTOP"), "4294967295")
        self.assertEqual(desktop.active_window(), self.page.window)


class FifteenSeconds(case.EndToEnd):
    settings = {"trayDuration": "fifteenSeconds"}

    def test_a_row_is_dismissed_after_fifteen_seconds_even_while_its_name_is_typed(self):
        self.drop()
        row = self.wait_for_rows(1)[0]
        shown = time.monotonic()
        desktop.click(*row.field)
        desktop.type_text("half a na")
        desktop.wait_until(self.tray_is_hidden, "the tray is hidden", 20)
        self.assertAlmostEqual(time.monotonic() - shown, 15, delta=1.5)
        self.assertEqual(len(desktop.pictures()), 1)


if __name__ == "__main__":
    unittest.main(verbosity=2)
