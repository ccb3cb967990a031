# SPDX-License-Identifier: MIT
"""Quitting, signals, and the loss of the display or the bus."""

import os
import signal

from driver import Scenario, eventually


class Quit(Scenario):
    needs_accessibility = True

    def test_from_the_footer(self):
        d = self.desktop
        d.start("--background")
        d.open_popover()
        d.click_on("Quit")
        self.assert_ends()


class Signal(Scenario):
    def test_terminate(self):
        self.end_by(signal.SIGTERM)

    def test_interrupt(self):
        self.end_by(signal.SIGINT)

    def test_hang_up(self):
        self.end_by(signal.SIGHUP)

    def end_by(self, number):
        d = self.desktop
        d.start("--background")
        d.open_popover()
        d.program.send_signal(number)
        self.assert_ends()


class DuringAScan(Scenario):
    """The tool of the scan is stopped, so that the scan cannot finish before the test."""

    def setUp(self):
        super().setUp()
        d = self.desktop
        d.env["PORTOLAN_TOOLS"] = "external"
        d.start("--background")
        d.open_popover()
        self.tool = d.hold_scan()

    def test_quits(self):
        self.desktop.program.send_signal(signal.SIGTERM)
        self.assert_ends()
        eventually(lambda: not os.path.exists(f"/proc/{self.tool}"), "the tool to end as well")

    def test_exits_when_the_display_is_lost(self):
        d = self.desktop
        d.x_server.kill()
        self.assert_ends(status=1)
        (d.folder / "portolan.log").unlink()  # Qt reports the loss of the display


class Lost(Scenario):
    def setUp(self):
        super().setUp()
        self.desktop.start("--background")
        self.desktop.shown_icon()

    def test_display(self):
        d = self.desktop
        d.open_popover()
        d.x_server.kill()
        self.assert_ends(status=1)
        (d.folder / "portolan.log").unlink()  # Qt reports the loss of the display

    def test_bus(self):
        d = self.desktop
        d.open_popover()
        d.bus.kill()
        self.assert_ends()
