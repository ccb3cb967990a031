# SPDX-License-Identifier: MIT
"""The popover at the icon."""

import time

from driver import Scenario, eventually

PANEL_HEIGHT = 31
GAP = 4


class Popover(Scenario):
    def setUp(self):
        super().setUp()
        self.desktop.start("--background")

    def test_opens_at_the_icon(self):
        d = self.desktop
        x, _ = d.shown_icon()
        popover = d.open_popover()
        self.assertEqual(popover.width, 384)
        self.assertEqual(popover.y, PANEL_HEIGHT + GAP, "right below the panel")
        self.assertLess(popover.x, x)
        self.assertLessEqual(x, popover.x + popover.width)
        self.assertLessEqual(popover.x + popover.width, 1280 - GAP)

    def test_has_the_keyboard_and_no_task_bar_entry(self):
        d = self.desktop
        popover = d.open_popover()
        eventually(lambda: d.active_window() == popover.id, "the popover to be active")
        popover = d.popover()
        self.assertFalse(popover.is_in_task_bar)
        self.assertFalse(popover.is_in_pager)

    def test_stays_out_of_the_task_bar_when_opened_again(self):
        d = self.desktop
        d.open_popover()
        d.click_icon()
        self.await_closed()
        popover = d.open_popover()
        eventually(lambda: d.active_window() == popover.id, "the popover to be active")
        self.assertFalse(d.popover().is_in_task_bar)

    def test_closes_with_a_second_click(self):
        d = self.desktop
        d.open_popover()
        d.click_icon()
        self.await_closed()
        d.open_popover()

    def test_closes_with_escape(self):
        d = self.desktop
        popover = d.open_popover()
        eventually(lambda: d.active_window() == popover.id, "the popover to be active")
        d.press("Escape")
        self.await_closed()

    def test_closes_with_a_click_into_another_window(self):
        d = self.desktop
        d.spawn("xev", "-geometry", "300x200+100+300")
        eventually(lambda: d.run("xdotool", "search", "--onlyvisible", "--name", "Event Tester"), "the other window")
        popover = d.open_popover()
        eventually(lambda: d.active_window() == popover.id, "the popover to be active")
        d.click(250, 400)
        self.await_closed()
        time.sleep(0.3)  # an earlier click on the icon would count as the one that closed the popover
        d.open_popover()

    def await_closed(self):
        eventually(lambda: not self.desktop.popover(), "the popover to close")
