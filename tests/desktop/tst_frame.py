# SPDX-License-Identifier: MIT
"""The window's own title bar, buttons, border and edges, and the popover's corners."""

import re
import time

from driver import Scenario, eventually

STRIP = 14  # the middle of the title bar below the top of the window


class Frame(Scenario):
    needs_accessibility = True

    def setUp(self):
        super().setUp()
        self.desktop.start("--window")
        self.window = self.desktop.opened_window()
        eventually(lambda: self.desktop.active_window() == self.window.id, "the window to be active")

    def drag(self, x, y, by_x, by_y):
        """Drags from a point of the window."""
        steps = [word for i in range(1, 11) for word in
                 ("mousemove", str(self.window.x + x + by_x * i // 10), str(self.window.y + y + by_y * i // 10), "sleep", "0.03")]
        self.desktop.run("xdotool", "mousemove", str(self.window.x + x), str(self.window.y + y), "sleep", "0.2", "mousedown", "1",
                         "sleep", "0.1", *steps, "sleep", "0.2", "mouseup", "1")

    def await_geometry(self, condition, what):
        def now():
            window = self.desktop.window()
            return window and condition(window) and window
        self.window = eventually(now, what)

    def test_has_no_frame_of_the_window_manager(self):
        d = self.desktop
        self.assertIn("_MOTIF_WM_HINTS", self.window.properties)
        self.assertNotRegex(self.window.properties, r"_NET_FRAME_EXTENTS.*= .*[1-9]")
        self.assertIn('WM_WINDOW_ROLE(STRING) = "portolan-desktop"', self.window.properties)
        self.assertIn('WM_NAME(STRING) = "Portolan"', self.window.properties)
        buttons = [d.find(name).frame for name in ("Minimize", "Maximize", "Close")]
        self.assertEqual(sorted(buttons), buttons, "from left to right")
        self.assertTrue(all(y < self.window.y + 28 and x > self.window.x + 240 for x, y, _, _ in buttons))

    def test_is_moved_by_its_title_bar(self):
        x, y = self.window.x, self.window.y
        self.drag(200, STRIP, -60, 50)
        self.await_geometry(lambda w: w.x < x - 30 and w.y > y + 20, "the window to be moved")
        self.assertEqual((self.window.width, self.window.height), (480, 620))
        # The release has gone to the window manager; the next click must count nevertheless.
        self.desktop.click_on("Settings")
        self.desktop.find("Auto-refresh")

    def test_double_click_maximises_and_restores(self):
        d = self.desktop
        for size in ((1280, 769), (480, 620)):
            d.move_to(self.window.x + 200, self.window.y + STRIP)
            time.sleep(0.5)
            d.run("xdotool", "click", "--repeat", "2", "--delay", "120", "1")
            self.await_geometry(lambda w: (w.width, w.height) == size, f"the size {size}")

    def test_its_buttons_do_what_they_say(self):
        d = self.desktop
        d.click_on("Maximize")
        self.await_geometry(lambda w: w.width == 1280, "the window to be maximised")
        d.click_on("Restore")
        self.await_geometry(lambda w: w.width == 480, "the window to be restored")
        d.click_on("Minimize")
        eventually(lambda: not d.window(), "the window to be minimised")
        d.run("xdotool", "windowactivate", self.window.id)
        d.opened_window()
        d.click_on("Close")
        eventually(lambda: not d.window(), "the window to close")
        self.assertTrue(d.is_running())

    def test_is_resized_by_its_edges(self):
        self.drag(479, 300, 80, 0)
        self.await_geometry(lambda w: 540 <= w.width <= 580, "the window to be wider")
        right = self.window.x + self.window.width
        self.drag(1, 300, 400, 0)
        self.await_geometry(lambda w: w.width == 400, "the window to have its minimum width")
        self.assertEqual(self.window.x + 400, right)
        self.drag(398, self.window.height - 2, 0, -500)
        self.await_geometry(lambda w: w.height == 440, "the window to have its minimum height")

    def test_a_right_click_opens_the_menu_of_the_window_manager(self):
        d = self.desktop

        def mapped():
            return len(re.findall(r"0x[0-9a-f]+ ", d.run("xwininfo", "-root", "-children"))), \
                d.run("xdotool", "search", "--onlyvisible", "--class", "xfwm4")
        before = mapped()
        d.click(self.window.x + 200, self.window.y + STRIP, button=3)
        eventually(lambda: mapped()[1] != before[1], "the menu")
        d.press("Escape")

    def test_popover_and_window_have_different_titles(self):
        d = self.desktop
        popover = d.open_popover()
        self.assertNotIn('_NET_WM_NAME(UTF8_STRING) = "Portolan"', popover.properties)


class KWinButtons(Scenario):
    needs_accessibility = True

    def test_follow_the_configuration(self):
        d = self.desktop
        d.env["XDG_CURRENT_DESKTOP"] = "KDE"
        (d.home / "config/kwinrc").write_text("[org.kde.kdecoration2]\nButtonsOnLeft=XI\nButtonsOnRight=A\n")
        d.start("--window")
        window = d.opened_window()
        close, minimize, maximize = (d.find(name).frame[0] - window.x for name in ("Close", "Minimize", "Maximize"))
        self.assertLess(close, minimize)
        self.assertLess(minimize, 100)
        self.assertGreater(maximize, 400)


class Corners(Scenario):
    """Of the popover, on a black desktop."""

    def corner_and_edge(self):
        """How bright its top left pixel is, and one at the middle of its top edge."""
        d = self.desktop
        d.start("--background")
        popover = d.open_popover()
        time.sleep(1)
        return [self.brightness(popover.x + x, popover.y) for x in (0, 192)]

    def brightness(self, x, y):
        pixel = self.desktop.run("import", "-window", "root", "-crop", f"1x1+{x}+{y}", "-depth", "8", "txt:-")
        return int(re.search(r"#([0-9A-F]{2})", pixel)[1], 16)

    def test_are_square_without_a_compositor(self):
        corner, edge = self.corner_and_edge()
        self.assertEqual(corner, edge)
        self.assertGreater(edge, 25)


class CompositedCorners(Corners):
    parts = {"compositor": True}
    test_are_square_without_a_compositor = None

    def test_are_round(self):
        corner, edge = self.corner_and_edge()
        self.assertLess(corner, 15)
        self.assertGreater(edge, 25)
