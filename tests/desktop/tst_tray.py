"""The status icon in an XEmbed tray."""

import re
import shutil

from driver import Scenario, eventually


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

    def icon(self):
        """The centre of the icon in the tray, or None."""
        tree = self.desktop.run("xwininfo", "-root", "-tree")
        place = re.search(r'"Portolan".* (\d+)x(\d+)\+\d+\+\d+ +\+(\d+)\+(\d+)$', tree, re.MULTILINE)
        if not place:
            return None
        width, height, x, y = map(int, place.groups())
        return x + width // 2, y + height // 2

    def shown_icon(self):
        return eventually(self.icon, "the icon in the tray")

    def count_colours(self, x, y):
        d = self.desktop
        picture = d.folder / "icon.png"
        d.run("import", "-window", "root", "-crop", f"24x24+{x - 12}+{y - 12}", str(picture))
        return int(d.run("identify", "-format", "%k", str(picture)))
