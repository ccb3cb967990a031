# SPDX-License-Identifier: MIT
"""The program must be almost idle while no window is shown."""

import time
from pathlib import Path

from driver import Scenario, eventually

SECONDS = 3


class Hidden(Scenario):
    def test_is_idle_before_the_first_opening(self):
        d = self.desktop
        d.start("--background")
        d.shown_icon()
        eventually(lambda: self.wake_ups() < 4, "the program to come to rest")

    def test_is_idle_after_closing(self):
        d = self.desktop
        d.start("--background")
        d.open_popover()
        time.sleep(1)
        d.click_icon()
        eventually(lambda: not d.popover(), "the popover to close")
        # One refresh may happen in this time. A running animation would wake the program sixty times a second.
        eventually(lambda: self.wake_ups() < 60 * SECONDS / 2, "the program to come to rest")

    def test_stops_the_spinner_while_hidden(self):
        d = self.desktop
        d.env["PORTOLAN_TOOLS"] = "external"
        d.start("--background")
        d.open_popover()
        d.hold_scan()  # the spinner of the first scan is shown now
        eventually(lambda: self.wake_ups(seconds=0.5) > 10, "the spinner to turn")
        d.press("Escape")
        eventually(lambda: not d.popover(), "the popover to close")
        eventually(lambda: self.wake_ups(seconds=0.5) < 10, "the spinner to stop")

    def wake_ups(self, seconds=SECONDS):
        """The number of voluntary context switches of the program's threads in `seconds`, without threads that end meanwhile."""
        before = self.switches()
        time.sleep(seconds)
        return sum(count - before.get(thread, 0) for thread, count in self.switches().items())

    def switches(self):
        """The number of voluntary context switches of each thread so far."""
        switches = {}
        for status in Path(f"/proc/{self.desktop.program.pid}/task").glob("*/status"):
            fields = dict(line.split(":", 1) for line in status.read_text().splitlines())
            switches[fields["Pid"].strip()] = int(fields["voluntary_ctxt_switches"])
        return switches
