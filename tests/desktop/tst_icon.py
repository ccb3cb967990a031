# SPDX-License-Identifier: MIT
"""The status icon in a StatusNotifier panel."""

import time

from driver import Scenario, eventually


class Icon(Scenario):
    def test_appears_in_the_panel(self):
        d = self.desktop
        d.start("--background")
        x, y = d.shown_icon()
        picture = d.folder / "icon.png"
        d.run("import", "-window", "root", "-crop", f"24x24+{x - 12}+{y - 12}", str(picture))
        colours = d.run("identify", "-format", "%k", str(picture))
        self.assertGreater(int(colours), 8, "the icon is drawn, with antialiased edges")
        self.assertIsNone(d.popover())

    def test_comes_back_with_a_restarted_panel(self):
        d = self.desktop
        d.start("--background")
        d.shown_icon()
        d.stop_panel()
        self.assertTrue(d.is_running())
        d.panel = d.start_panel()
        d.open_popover()

    def test_opens_the_popover_from_its_menu(self):
        d = self.desktop
        d.start("--background")
        self.choose_from_menu("Down")
        d.opened_popover()

    def test_quits_from_its_menu(self):
        d = self.desktop
        d.start("--background")
        self.choose_from_menu("Down", "Down")
        self.assert_ends()

    def choose_from_menu(self, *steps):
        d = self.desktop
        d.click_icon(button=3)
        eventually(self.menu_is_open, "the icon's menu")
        time.sleep(0.2)  # a menu ignores keys at the moment when it opens
        d.press(*steps, "Return")

    def menu_is_open(self):
        d = self.desktop
        ids = d.run("xdotool", "search", "--onlyvisible", "--class", "wrapper-2.0").split()
        return any("_NET_WM_WINDOW_TYPE_POPUP_MENU" in d.run("xprop", "-id", id, "_NET_WM_WINDOW_TYPE") for id in ids)


class IconWithLaterPanel(Scenario):
    parts = {"panel": False}

    def test_appears_in_a_panel_that_starts_later(self):
        d = self.desktop
        d.start("--background")
        time.sleep(0.5)  # until the program has found that there is no panel
        d.panel = d.start_panel()
        d.open_popover()
