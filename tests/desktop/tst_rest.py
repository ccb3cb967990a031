"""What the program does while nobody looks: as good as nothing."""

import time
from pathlib import Path

from driver import Scenario, eventually

SECONDS = 3


class Hidden(Scenario):
    def test_sleeps_before_the_first_opening(self):
        d = self.desktop
        d.start("--background")
        d.shown_icon()
        time.sleep(0.5)
        self.assertLess(self.wake_ups(), 4)

    def test_sleeps_after_closing(self):
        d = self.desktop
        d.start("--background")
        d.open_popover()
        time.sleep(1)
        d.click_icon()
        eventually(lambda: not d.popover(), "the popover to close")
        time.sleep(0.5)
        # One refresh may fall into this time. An animation that goes on would wake it sixty times a second.
        self.assertLess(self.wake_ups(), 60 * SECONDS / 2)

    def test_turns_no_wheel_that_nobody_sees(self):
        d = self.desktop
        d.env["PORTOLAN_TOOLS"] = "external"
        d.start("--background")
        d.open_popover()
        d.hold_scan()  # the wheel of the first scan is turning now
        self.assertGreater(self.wake_ups(seconds=0.5), 10)
        d.press("Escape")
        eventually(lambda: not d.popover(), "the popover to close")
        self.assertLess(self.wake_ups(seconds=0.5), 10)

    def wake_ups(self, seconds=SECONDS):
        """How often the program's threads go to sleep in some seconds; without those of threads that end in this time."""
        before = self.naps()
        time.sleep(seconds)
        return sum(naps - before.get(thread, 0) for thread, naps in self.naps().items())

    def naps(self):
        """How often each thread has gone to sleep so far."""
        naps = {}
        for status in Path(f"/proc/{self.desktop.program.pid}/task").glob("*/status"):
            fields = dict(line.split(":", 1) for line in status.read_text().splitlines())
            naps[fields["Pid"].strip()] = int(fields["voluntary_ctxt_switches"])
        return naps
