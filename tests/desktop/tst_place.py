# SPDX-License-Identifier: MIT
"""Where the popover opens if the panel says something else, or the window manager does, and what closes it."""

import shutil
import time
import unittest

import dbus

from driver import Scenario, eventually
from tst_popover import GAP, PANEL_HEIGHT
from tst_tray import embedded_icon


class FromTheMenu(Scenario):
    def test_opens_at_the_panels_end_before_any_click(self):
        d = self.desktop
        d.start("--background")
        d.shown_icon()
        d.move_to(640, 400)
        bus = dbus.bus.BusConnection(d.env["DBUS_SESSION_BUS_ADDRESS"])
        menu = bus.get_object(bus.get_name_owner("org.portolan.portolan"), "/MenuBar", introspect=False)
        menu.get_dbus_method("Event", "com.canonical.dbusmenu")(1, "clicked", dbus.String("", variant_level=1), dbus.UInt32(0))
        popover = d.opened_popover()
        self.assertEqual((popover.x + popover.width, popover.y), (1280 - GAP, PANEL_HEIGHT + GAP))


class WrongCoordinates(Scenario):
    """MATE's panel names the same point for every icon."""

    def test_follow_the_pointer(self):
        d = self.desktop
        d.start("--background")
        x, y = d.shown_icon()
        d.move_to(x, y)
        bus = dbus.bus.BusConnection(d.env["DBUS_SESSION_BUS_ADDRESS"])
        item = bus.get_object(bus.get_name_owner("org.portolan.portolan"), "/StatusNotifierItem", introspect=False)
        item.get_dbus_method("Activate", "org.kde.StatusNotifierItem")(0, 27)
        popover = d.opened_popover()
        self.assertEqual(popover.y, PANEL_HEIGHT + GAP)
        self.assertTrue(popover.x < x < popover.x + popover.width, popover)


class Wallpaper(Scenario):
    def test_closes_with_a_click_on_it(self):
        d = self.desktop
        d.start("--background")
        popover = d.open_popover()
        eventually(lambda: d.active_window() == popover.id, "the popover to be active")
        d.click(100, 700)  # the window manager moves no focus for this
        eventually(lambda: not d.popover(), "the popover to close")
        time.sleep(0.4)
        d.open_popover()

    def test_is_not_what_is_clicked_in_the_popover_or_the_panel(self):
        d = self.desktop
        d.start("--background")
        popover = d.open_popover()
        d.click(popover.x + 192, popover.y + 90)
        d.click(300, 15)
        time.sleep(0.4)
        self.assertTrue(d.popover())


@unittest.skipUnless(shutil.which("i3"), "i3 is not installed")
class Tiling(Scenario):
    """i3 shows a window again at another position than the requested one."""

    parts = {"manager": False, "panel": False}
    needs_accessibility = True

    def setUp(self):
        super().setUp()
        self.config = self.desktop.folder / "i3.conf"
        self.configure("bottom")
        self.desktop.spawn("i3", "-c", str(self.config))
        self.desktop.start("--background")

    def configure(self, edge):
        self.config.write_text(f"# i3 config file (v4)\nfont pango:monospace 10\nbar {{\n  position {edge}\n}}\n")

    def test_opens_at_the_same_place_every_time(self):
        places = set()
        for _ in range(3):
            popover, icon = self.opened_and_closed()
            places.add((popover.x, popover.y))
            self.assertLess(popover.y + popover.height, icon[1], "above the bar")
        self.assertEqual(len(places), 1, places)

    def test_opens_at_a_bar_that_has_moved(self):
        for edge in ("top", "bottom", "top"):
            self.opened_and_closed()
            self.configure(edge)
            self.desktop.run("i3-msg", "restart")
            eventually(lambda: ((embedded_icon(self.desktop) or (0, 400))[1] < 400) == (edge == "top"), "the icon to move")
            popover, icon = self.opened_and_closed()
            self.assertEqual(popover.y > icon[1], edge == "top")

    def test_shows_what_is_under_the_pointer_when_it_has_grown_upwards(self):
        d = self.desktop
        for name in ("storefront", "blog-api", "invoices"):
            d.serve(name)
        d.click(*eventually(lambda: embedded_icon(d), "the icon in the bar"))
        d.find("invoices", role="list item")
        d.settle()
        x, y = min((row.centre for row in d.all_shown(role="list item")), key=lambda centre: centre[1])
        d.move_to(x, y)
        self.await_stop_button_at(y)
        top = d.popover().y
        for name in ("field-notes", "design-system"):
            d.serve(name)
        eventually(lambda: d.popover().y < top - 100, "the popover to grow")
        d.settle()
        self.await_stop_button_at(y)

    def await_stop_button_at(self, y):
        """Waits until the row at `y`, and no other, shows its buttons."""
        def is_there():
            rows = [node.frame for node in self.desktop.all_shown(role="list item")]
            stops = [node.centre[1] for node in self.desktop.all_shown("Stop")]
            return any(row[1] <= y < row[1] + row[3] and [row[1] < stop < row[1] + row[3] for stop in stops] == [True] for row in rows)
        eventually(is_there, "the buttons of the row under the pointer", timeout=5)

    def opened_and_closed(self):
        """Clicks the icon twice; returns the popover that was open in between, and the place of the icon."""
        d = self.desktop
        eventually(lambda: embedded_icon(d), "the icon in the bar")
        time.sleep(0.5)  # until the bar has its final place
        icon = embedded_icon(d)
        d.click(*icon)
        d.opened_popover()
        time.sleep(0.5)
        popover = d.popover()
        self.assertEqual(popover.x + popover.width, 1280 - GAP)
        d.click(*icon)
        eventually(lambda: not d.popover(), "the popover to close")
        return popover, icon
