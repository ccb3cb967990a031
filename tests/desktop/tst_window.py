# SPDX-License-Identifier: MIT
"""The window into which the popover can be detached."""

from driver import Scenario, eventually


class Detached(Scenario):
    needs_accessibility = True

    def setUp(self):
        super().setUp()
        self.desktop.start("--background")
        self.detach()

    def detach(self):
        d = self.desktop
        d.open_popover()
        d.click_on("Open in window")
        self.window = d.opened_window()
        eventually(lambda: not d.popover(), "the popover to close")

    def test_is_an_ordinary_active_window(self):
        d = self.desktop
        eventually(lambda: d.active_window() == self.window.id, "the window to be active")
        self.assertEqual((self.window.width, self.window.height), (480, 620))
        self.assertIn('_NET_WM_NAME(UTF8_STRING) = "Portolan"', self.window.properties)
        self.assertTrue(d.is_listed(self.window))
        self.assertTrue(self.window.is_in_task_bar)
        self.assertTrue(self.window.is_in_pager)

    def test_has_a_minimum_size(self):
        self.assertIn("minimum size: 400 by 440", self.window.properties)
        d = self.desktop
        d.run("xdotool", "windowsize", self.window.id, "200", "200")
        eventually(lambda: (d.window().width, d.window().height) == (400, 440), "the window to have its minimum size")

    def test_is_opened_only_once(self):
        self.desktop.run("xdotool", "windowminimize", self.window.id)
        eventually(lambda: not self.desktop.window(), "the window to be minimized")
        first = self.window
        self.detach()
        self.assertEqual(self.window.id, first.id)
        eventually(lambda: self.desktop.active_window() == first.id, "the window to be active")

    def test_is_maximised_again_after_having_been_closed(self):
        d = self.desktop
        d.run("xdotool", "mousemove", str(self.window.x + 200), str(self.window.y + 14), "click", "--repeat", "2", "1")
        eventually(lambda: d.window().width == 1280, "the window to be maximised")
        d.close(self.window)
        eventually(lambda: not d.window(), "the window to close")
        self.detach()
        eventually(lambda: "_NET_WM_STATE_MAXIMIZED_VERT" in d.window().properties, "the window to be maximised again")
        d.run("xdotool", "mousemove", "640", str(d.window().y + 14), "click", "--repeat", "2", "1")
        eventually(lambda: (d.window().width, d.window().height) == (480, 620), "the window to be restored")

    def test_program_keeps_running_when_it_is_closed_while_the_panel_restarts(self):
        d = self.desktop
        d.stop_panel()
        d.close(self.window)
        eventually(lambda: not d.windows(), "the window to close")
        self.assertTrue(d.is_running())
        d.panel = d.start_panel()
        self.detach()

    def test_program_keeps_running_when_closed(self):
        d = self.desktop
        d.close(self.window)
        eventually(lambda: not d.windows(), "the window to close")
        self.assertTrue(d.is_running())
        self.detach()
