# SPDX-License-Identifier: MIT
"""What opens under a Wayland compositor, which places its clients' windows itself: a real sway without a screen. The panel is
on a display of its own, and talks to the program over the session bus."""

import json
import os
import shutil
import subprocess
import time
import unittest

from driver import Scenario, eventually

SERVERS = ("storefront", "blog-api", "invoices")
# sway refuses to run as root, which the test is in its namespace.
AS_USER = [] if os.getuid() else ["unshare", "--user", "--map-user=1000", "--map-group=1000"]


def views(node):
    """The windows in a tree of sway."""
    if node.get("shell"):
        yield node
    for child in node["nodes"] + node["floating_nodes"]:
        yield from views(child)


@unittest.skipUnless(shutil.which("sway"), "sway is not installed")
@unittest.skipIf(subprocess.run([*AS_USER, "true"], stderr=subprocess.DEVNULL).returncode, "sway cannot run as root")
class Wayland(Scenario):
    parts = {"manager": False}
    needs_accessibility = True

    def test_opens_the_window_without_xwayland(self):
        self.start_in_sway(xwayland=False)
        window = self.opened()
        self.assert_is_the_window(window)
        self.sway("[app_id=org.portolan.portolan] floating enable")
        eventually(lambda: self.views()[0]["type"] == "floating_con", "the window to float")
        self.assert_is_the_window(self.opened())

    def test_opens_the_window_where_an_output_is_scaled(self):
        self.start_in_sway(xwayland=True, scale=2)
        self.assert_is_the_window(self.opened())

    def test_opens_the_popover_through_xwayland(self):
        self.start_in_sway(xwayland=True)
        popover = self.opened()
        self.assertEqual((popover["shell"], popover["type"], popover["name"]), ("xwayland", "floating_con", "Portolan popover"))
        self.assertEqual(popover["rect"]["width"], 384)
        self.assert_is_whole(popover)
        self.assertIsNone(self.desktop.shown("Stop"), "no row is taken to be under the pointer")
        self.desktop.click_icon()
        eventually(lambda: not self.views(), "the popover to close")
        rect = self.opened()["rect"]
        self.press(rect["x"] + 100, rect["y"] + 70)
        time.sleep(0.3)
        self.assertTrue(self.views(), "a press in it leaves it open")

    def start_in_sway(self, xwayland, scale=1):
        """Starts three servers, sway with one output of 1200 x 800 points, and the program in it."""
        d = self.desktop
        for name in SERVERS:
            d.serve(name)
        config, env = d.folder / "sway.conf", d.folder / "sway.env"
        config.write_text(f"xwayland {'enable' if xwayland else 'disable'}\n"
                          f"output * resolution {1200 * scale}x{800 * scale} scale {scale}\n"
                          f"exec env -0 >{env}.new && mv {env}.new {env}\n")
        without_screen = {"WLR_BACKENDS": "headless", "WLR_LIBINPUT_NO_DEVICES": "1", "WLR_RENDERER": "pixman"}
        outside = {name: value for name, value in d.env.items() if name != "DISPLAY"}
        d.spawn(*AS_USER, "sway", "-c", str(config), env=outside | without_screen)
        eventually(env.exists, "sway to run")
        self.env = dict(variable.split("=", 1) for variable in env.read_text().split("\0") if variable)
        self.assertEqual("DISPLAY" in self.env, xwayland)
        d.start("--background", env=self.env)
        d.shown_icon()
        self.assertEqual(self.views(), [])

    def press(self, x, y):
        """A click of Xwayland's pointer."""
        self.desktop.spawn("xdotool", "mousemove", str(x), str(y), "sleep", "0.2", "click", "1", env=self.env).wait()

    def sway(self, *arguments):
        return json.loads(self.desktop.run("swaymsg", "--raw", "-s", self.env["SWAYSOCK"], *arguments))

    def views(self):
        return [view for view in views(self.sway("-t", "get_tree")) if view["pid"] == self.desktop.program.pid]

    def opened(self):
        """The only view of the program after a click on the icon, with the list loaded."""
        d = self.desktop
        d.click_icon()
        for name in SERVERS:
            d.find(name, role="list item")
        d.settle()
        view, = self.views()
        return view

    def assert_is_the_window(self, view):
        self.assertEqual((view["shell"], view["app_id"], view["name"]), ("xdg_shell", "org.portolan.portolan", "Portolan"))
        self.assert_is_whole(view)

    def assert_is_whole(self, view):
        """The view is on the output, the program draws all of it, and every row is above the footer."""
        rect = view["rect"]
        self.assertTrue(0 <= rect["x"] <= 1200 - rect["width"] and 0 <= rect["y"] <= 800 - rect["height"], rect)
        d = self.desktop
        _, top, *size = d.find("Portolan", role="frame").frame
        self.assertEqual(size, [view["window_rect"]["width"], view["window_rect"]["height"]])
        footer = d.find("Quit").frame
        self.assertLessEqual(footer[1] + footer[3], top + size[1])
        rows = [node.frame for node in d.all_shown(role="list item")]
        self.assertEqual(len(rows), len(SERVERS))
        for _, y, _, height in rows:
            self.assertTrue(top < y and y + height < footer[1], (y, height, footer))
