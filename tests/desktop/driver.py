# SPDX-License-Identifier: MIT
"""Portolan in a session of its own: starts it, sends input and reads the state of its windows."""

import os
import re
import signal
import subprocess
import sys
import time
import unittest
from dataclasses import dataclass
from pathlib import Path

import accessibility
from session import HERE, TIMEOUT, Session, eventually

PORTOLAN = os.environ.get("PORTOLAN", str(HERE.parents[1] / "build/dev/bin/portolan"))


@dataclass(frozen=True)
class Window:
    """A window on the screen; position and size are those of its content."""

    id: str
    x: int
    y: int
    width: int
    height: int
    properties: str

    @property
    def is_popover(self):
        return "_NET_WM_WINDOW_TYPE_UTILITY" in self.properties

    @property
    def is_in_task_bar(self):
        return "_NET_WM_STATE_SKIP_TASKBAR" not in self.properties

    @property
    def is_in_pager(self):
        return "_NET_WM_STATE_SKIP_PAGER" not in self.properties


class Desktop(Session):
    """A session in which Portolan runs."""

    def __init__(self, **parts):
        super().__init__(**parts)
        self.program = None
        self._accessibility_bus = None

    # The program

    def start(self, *arguments, **options):
        """Starts the program; the other functions refer to the last one started."""
        self.program = self.spawn(PORTOLAN, *arguments, log="portolan.log", **options)
        return self.program

    def start_again(self, *arguments):
        """Starts the program a second time and returns the completed process."""
        return subprocess.run([PORTOLAN, *arguments], env=self.env, capture_output=True, text=True, timeout=TIMEOUT)

    def messages(self):
        """The standard output and error of the program."""
        log = self.folder / "portolan.log"
        return log.read_text() if log.exists() else ""

    def is_running(self):
        return self.program.poll() is None

    def serve(self, name):
        """Starts a web server in a folder `name`; returns its process and port."""
        folder = self.home / name
        folder.mkdir(exist_ok=True)
        server = self.spawn(sys.executable, "-u", "-m", "http.server", "0", "--bind", "127.0.0.1", cwd=folder,
                            stdout=subprocess.PIPE)
        return server, int(re.search(rb"port (\d+)", server.stdout.readline())[1])

    def record_pages(self):
        """Makes a recorder the opener of addresses. Call it before the program is started. Returns a function for the
        addresses opened so far."""
        tools, pages = self.home / "tools", self.folder / "pages"
        tools.mkdir()
        (tools / "xdg-open").write_text(f'#!/bin/sh\necho "$1" >>{pages}\n')
        (tools / "xdg-open").chmod(0o755)
        self.env["PATH"] = f"{tools}:{self.env['PATH']}"
        return lambda: pages.read_text().splitlines() if pages.exists() else []

    def hold_scan(self):
        """Stops the tool that a scan waits for, so that the scan lasts until its timeout; returns the tool's process id. The
        program must have been started with PORTOLAN_TOOLS=external."""
        return eventually(self._hold_tool, "the tool of a scan to run", pause=0)

    def _hold_tool(self):
        for children in Path(f"/proc/{self.program.pid}/task").glob("*/children"):
            try:
                for child in children.read_text().split():
                    # Not before exec: until then the parent waits for the child (vfork).
                    if Path(f"/proc/{child}/comm").read_text() == "lsof\n":
                        os.kill(int(child), signal.SIGSTOP)
                        return int(child)
            except (FileNotFoundError, ProcessLookupError):
                pass  # it has exited in the meantime
        return None

    # Input

    def move_to(self, x, y):
        self.run("xdotool", "mousemove", str(x), str(y))

    def click(self, x, y, button=1):
        self.run("xdotool", "mousemove", str(x), str(y), "sleep", "0.05", "click", str(button))

    def press(self, *keys):
        self.run("xdotool", "key", *keys)

    def type(self, text):
        self.run("xdotool", "type", text)

    def close(self, window):
        """Closes a window with the shortcut of the window manager."""
        eventually(lambda: self.active_window() == window.id, "the window to be active")
        self.press("alt+F4")

    def clipboard(self):
        return self.run("xclip", "-selection", "clipboard", "-out")

    # Windows

    def windows(self):
        """The visible windows of the program."""
        ids = self.run("xdotool", "search", "--onlyvisible", "--pid", str(self.program.pid)).split()
        return [window for id in ids if (window := self._window(id))]

    def popover(self):
        return next((window for window in self.windows() if window.is_popover), None)

    def window(self):
        ordinary = [window for window in self.windows() if '"portolan-desktop"' in window.properties]
        assert len(ordinary) <= 1, "there must be at most one window"
        return ordinary[0] if ordinary else None

    def opened_popover(self):
        return eventually(self.popover, "the popover")

    def opened_window(self):
        return eventually(self.window, "the window")

    def active_window(self):
        return self.run("xdotool", "getactivewindow").strip()

    def is_listed(self, window):
        """Whether the window manager lists it as a client window."""
        return f"{int(window.id):#x}" in self.run("xprop", "-root", "_NET_CLIENT_LIST")

    def _window(self, id):
        geometry = dict(line.split("=") for line in self.run("xdotool", "getwindowgeometry", "--shell", id).split())
        properties = self.run("xprop", "-id", id)
        if not geometry or not properties:
            return None  # closed in the meantime
        return Window(id, int(geometry["X"]), int(geometry["Y"]), int(geometry["WIDTH"]), int(geometry["HEIGHT"]), properties)

    # The status icon

    def icon(self):
        """The centre of the status icon in the panel, or None."""
        places = re.findall(r'"wrapper-2\.0".* (\d+)x(\d+)\+-?\d+\+-?\d+ +\+(\d+)\+(\d+)$',
                            self.run("xwininfo", "-root", "-tree"), re.MULTILINE)
        for width, height, x, y in (map(int, place) for place in places):
            if width >= 16 and x + width <= int(self.screen.split("x")[0]) and y < 31 and x > 640:
                return x + width // 2, y + height // 2
        return None

    def shown_icon(self):
        def settled():
            # The panel maps a new icon before it moves it to its position.
            before = self.icon()
            time.sleep(0.1)
            return before if before and self.icon() == before else None
        return eventually(settled, "the status icon")

    def click_icon(self, button=1):
        self.click(*self.shown_icon(), button)

    def open_popover(self):
        self.click_icon()
        return self.opened_popover()

    # Content

    def enable_accessibility(self):
        """Makes the program register with AT-SPI. Call it before the program is started."""
        self.env["QT_LINUX_ACCESSIBILITY_ALWAYS_ON"] = "1"
        self._accessibility_bus = accessibility.connect(self.env["DBUS_SESSION_BUS_ADDRESS"])

    def all_shown(self, part_of_name="", role=None):
        """All visible nodes with `part_of_name` in their names."""
        for program in accessibility.programs(self._accessibility_bus):
            if program.is_named("portolan"):
                yield from (node for node in program.walk() if node.is_named(part_of_name, role))

    def settle(self):
        """Waits until the rows have stood still: a press on one that has just moved is discarded."""
        before = None
        while before != (before := [row.frame for row in self.all_shown(role="list item")]):
            time.sleep(0.6)

    def shown(self, part_of_name, role=None):
        """The first of them, or None."""
        return next(self.all_shown(part_of_name, role), None)

    def find(self, part_of_name, role=None):
        return eventually(lambda: self.shown(part_of_name, role), f"{part_of_name!r} to be shown")

    def click_on(self, part_of_name, role=None, button=1):
        self.click(*self.find(part_of_name, role).centre, button)


class Scenario(unittest.TestCase):
    """A test with a session of its own. It fails if the program does not exit with 0 or prints anything."""

    parts = {}
    needs_accessibility = False

    def setUp(self):
        self.desktop = Desktop(**self.parts)
        self.addCleanup(self.desktop.__exit__)
        if self.needs_accessibility:
            self.desktop.enable_accessibility()

    def tearDown(self):
        d = self.desktop
        if d.program and d.is_running():
            d.program.send_signal(signal.SIGTERM)
            self.assert_ends()
        self.assertEqual(d.messages(), "", "the program has printed messages")

    def assert_ends(self, status=0):
        self.assertEqual(self.desktop.program.wait(TIMEOUT), status)
