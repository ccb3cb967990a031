# SPDX-License-Identifier: MIT
"""Starting the program, also while it runs."""

import time

from driver import Scenario, eventually


class Again(Scenario):
    """An instance already runs in the panel."""

    def setUp(self):
        super().setUp()
        self.desktop.start("--background")
        self.desktop.shown_icon()

    def test_shows_the_popover(self):
        self.assert_forwarded(self.desktop.start_again())
        self.desktop.opened_popover()

    def test_shows_the_window(self):
        self.assert_forwarded(self.desktop.start_again("--window"))
        self.desktop.opened_window()

    def test_does_nothing_in_the_background(self):
        self.assert_forwarded(self.desktop.start_again("--background"))
        time.sleep(0.5)
        self.assertEqual(self.desktop.windows(), [])

    def assert_forwarded(self, start):
        self.assertEqual((start.returncode, start.stdout, start.stderr), (0, "", ""))
        self.assertTrue(self.desktop.is_running())


class Simultaneously(Scenario):
    def test_one_of_six_keeps_running(self):
        d = self.desktop
        starts = [d.start() for _ in range(6)]
        eventually(lambda: sum(start.poll() is None for start in starts) == 1, "all but one to end")
        d.program = next(start for start in starts if start.poll() is None)
        self.assertEqual([start.returncode for start in starts if start is not d.program], [0] * 5)
        d.opened_popover()


class WithoutPanel(Scenario):
    parts = {"panel": False}

    def test_opens_the_window_and_ends_with_it(self):
        d = self.desktop
        d.start()
        window = d.opened_window()
        d.close(window)
        self.assert_ends()

    def test_shows_no_window_in_the_background(self):
        d = self.desktop
        d.start("--background")
        time.sleep(1)
        self.assertTrue(d.is_running())
        self.assertEqual(d.windows(), [])
        self.assertEqual(d.start_again().returncode, 0)
        d.opened_window()

    def test_keeps_running_if_a_panel_starts_while_the_window_is_open(self):
        d = self.desktop
        d.start()
        window = d.opened_window()
        d.panel = d.start_panel()
        d.shown_icon()
        d.close(window)
        eventually(lambda: not d.windows(), "the window to close")
        d.open_popover()


class WithoutBus(Scenario):
    parts = {"bus": False, "manager": False, "panel": False}

    def test_opens_the_window_of_the_running_instance(self):
        d = self.desktop
        d.start("--background")
        time.sleep(0.5)
        self.assertEqual(d.windows(), [])
        again = d.start_again()
        self.assertEqual((again.returncode, again.stdout, again.stderr), (0, "", ""))
        d.opened_window()
