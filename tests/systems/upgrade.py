# SPDX-License-Identifier: MIT
"""The installed program in a desktop session, upgraded while a user has settings. Run by tests/systems/install."""

import json
import os
import re
import subprocess
import sys
import unittest
from pathlib import Path

sys.path.insert(0, str(Path(__file__).resolve().parents[1] / "desktop"))
from driver import Scenario, eventually


class Upgrade(Scenario):
    needs_accessibility = True

    def test_keeps_settings_and_autostart(self):
        d = self.desktop
        d.serve("storefront")
        d.start("--background")
        d.open_popover()
        d.find("storefront", role="list item")
        d.settle()
        d.click_on("storefront", role="list item", button=3)
        d.click_on("Pin to Top")
        eventually(self.is_pinned, "the row to be pinned")
        d.click_on("Settings")
        d.click_on("Launch at Login")
        autostart = d.home / "config/autostart/portolan.desktop"
        eventually(autostart.exists, "the autostart entry")
        settings = d.home / "config/portolan/settings.json"
        before = settings.read_text(), autostart.read_text()
        d.program.terminate()
        self.assert_ends()

        subprocess.run(["sudo", "apt-get", "install", "-qq", "-y", os.environ["PORTOLAN_UPGRADE"]], check=True,
                       stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)

        # As the desktop does at the next login.
        command = re.search(r"^Exec=(.*)$", autostart.read_text(), re.MULTILINE)[1].split()
        self.assertEqual(command, ["/usr/bin/portolan", "--background"])
        d.start(*command[1:])
        d.open_popover()
        eventually(self.is_pinned, "the row to be pinned after the upgrade")
        self.assertEqual((settings.read_text(), autostart.read_text()), before)
        self.assertTrue(json.loads(before[0])["pinnedPorts"])

    def is_pinned(self):
        row = self.desktop.shown("storefront", role="list item")
        return row and "inned" in row.name


if __name__ == "__main__":
    unittest.main()
