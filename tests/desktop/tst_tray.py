# SPDX-License-Identifier: MIT
"""The status icon in an XEmbed tray."""

import re
import shutil
import time

from driver import Scenario, eventually


def embedded_icon(desktop):
    """The centre of the icon in an XEmbed tray, or None."""
    tree = desktop.run("xwininfo", "-root", "-tree")
    place = re.search(r'"Portolan".* (\d+)x(\d+)\+\d+\+\d+ +\+(\d+)\+(\d+)$', tree, re.MULTILINE)
    if not place:
        return None
    width, height, x, y = map(int, place.groups())
    return x + width // 2, y + height // 2


class Tray(Scenario):
    parts = {"panel": False}

    def setUp(self):
        super().setUp()
        self.tray = self.start_tray()

    def start_tray(self):
        if shutil.which("trayer"):
            return self.desktop.spawn("trayer", "--edge", "top", "--align", "right", "--widthtype", "request", "--height", "24")
        return self.desktop.spawn("stalonetray", "--geometry", "1x1-0+0", "--icon-size", "24", "--skip-taskbar")

    def test_opens_the_popover(self):
        d = self.desktop
        d.start("--background")
        x, y = self.shown_icon()
        self.assertGreater(self.count_colours(x, y), 8, "the icon is drawn, with antialiased edges")
        d.click(x, y)
        d.opened_popover()
        d.click(x, y)
        eventually(lambda: not d.popover(), "the popover to close")

    def test_shows_the_icon_again_after_a_restart(self):
        d = self.desktop
        d.start("--background")
        self.shown_icon()
        self.tray.kill()
        self.tray.wait()
        eventually(lambda: not self.icon(), "the icon to go")
        self.start_tray()
        d.click(*self.shown_icon())
        d.opened_popover()

    def test_loses_the_icon_to_a_panel(self):
        d = self.desktop
        d.start("--background")
        self.shown_icon()
        d.panel = d.start_panel()
        eventually(lambda: not self.icon(), "the icon to leave the tray")
        d.open_popover()

    def test_shows_its_menu_on_a_right_click(self):
        d = self.desktop
        d.start("--background")
        icon = self.shown_icon()
        d.click(*icon, 3)
        menu = self.shown_menu()
        self.assertTrue(0 <= menu.x and menu.x + menu.width <= 1280 and 0 <= menu.y, "it is all on the screen")
        self.assertIsNone(d.popover())
        d.click(200, 600)
        eventually(lambda: not self.menu(), "the menu to close")
        d.click(*icon, 3)
        self.shown_menu()
        d.press("Escape")
        eventually(lambda: not self.menu(), "the menu to close")
        d.click(*icon)
        d.opened_popover()

    def test_opens_from_its_menu(self):
        d = self.desktop
        d.start("--background")
        d.click(*self.shown_icon(), 3)
        self.shown_menu()
        d.press("Down", "Return")
        popover = d.opened_popover()
        self.assertTrue(popover.x <= self.icon()[0] <= popover.x + popover.width, "at the icon")
        d.click(*self.icon())
        eventually(lambda: not d.popover(), "the popover to close")

    def test_quits_from_its_menu(self):
        d = self.desktop
        d.start("--background")
        d.click(*self.shown_icon(), 3)
        menu = self.shown_menu()
        d.click(menu.x + menu.width // 2, menu.y + menu.height - 12)
        self.assert_ends()

    def menu(self):
        return next((window for window in self.desktop.windows() if '"Portolan menu"' in window.properties), None)

    def shown_menu(self):
        menu = eventually(self.menu, "the menu")
        time.sleep(0.2)  # until it holds the pointer and the keyboard
        return menu

    def icon(self):
        return embedded_icon(self.desktop)

    def shown_icon(self):
        def settled():
            # A tray maps a new icon before it has its final place.
            before = self.icon()
            time.sleep(0.1)
            return before if before and self.icon() == before else None
        return eventually(settled, "the icon in the tray")

    def count_colours(self, x, y):
        d = self.desktop
        picture = d.folder / "icon.png"
        d.run("import", "-window", "root", "-crop", f"24x24+{x - 12}+{y - 12}", str(picture))
        return int(d.run("identify", "-format", "%k", str(picture)))
