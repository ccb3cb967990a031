# SPDX-License-Identifier: MIT
"""What is shown stays correct and does not jump."""

import os
import re
import signal
import time

from driver import Scenario, eventually


class Nothing(Scenario):
    """With no server running."""

    needs_accessibility = True

    def test_the_popover_keeps_its_height(self):
        d = self.desktop
        d.start("--background")
        d.open_popover()
        d.find("Nothing running")
        height = d.popover().height
        end = time.monotonic() + 11  # two scans
        while time.monotonic() < end:
            self.assertEqual(d.popover().height, height)
            self.assertIsNone(d.shown("Scanning ports"))

    def test_a_scan_that_lasts_shows_at_the_same_height(self):
        d = self.desktop
        d.env["PORTOLAN_TOOLS"] = "external"
        d.start("--background")
        d.open_popover()
        d.find("Nothing running")
        height = d.popover().height
        tool = d.hold_scan()
        d.find("Scanning ports")
        self.assertEqual(d.popover().height, height)
        os.kill(tool, signal.SIGCONT)
        d.find("Nothing running")
        self.assertEqual(d.popover().height, height)


class Minimised(Scenario):
    needs_accessibility = True

    def test_says_at_once_how_old_the_list_is(self):
        d = self.desktop
        d.start("--window")
        window = d.opened_window()
        d.find("Updated")
        d.click_on("Settings")
        d.click_on("Auto-refresh")
        eventually(lambda: not d.shown("Auto-refresh"), "the menu to close")
        d.click_on("Minimize")
        eventually(lambda: not d.window(), "the window to be minimised")
        time.sleep(9)
        d.run("xdotool", "windowactivate", window.id)
        eventually(d.window, "the window", pause=0)
        seconds = re.search(r"Updated (\d+)s ago", d.find("Updated").name)
        self.assertIsNotNone(seconds)
        self.assertGreaterEqual(int(seconds[1]), 9)


class LaunchAtLogin(Scenario):
    needs_accessibility = True

    def is_checked(self):
        d = self.desktop
        d.click_on("Settings")
        checked = d.find("Launch at Login").is_checked
        d.press("Escape")
        eventually(lambda: not d.shown("Launch at Login"), "the menu to close")
        return checked

    def test_shows_a_change_made_elsewhere(self):
        d = self.desktop
        entry = d.home / "config/autostart/portolan.desktop"
        d.start("--background")
        d.open_popover()
        self.assertFalse(self.is_checked())
        d.click_on("Settings")
        d.click_on("Launch at Login")
        eventually(entry.exists, "the autostart entry")
        eventually(lambda: not d.shown("Launch at Login"), "the menu to close")
        self.assertTrue(self.is_checked())
        entry.unlink()
        self.assertFalse(self.is_checked())
