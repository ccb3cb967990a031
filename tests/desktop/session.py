# SPDX-License-Identifier: MIT
"""A private desktop session: X server, session bus, window manager, panel. Sessions share nothing."""

import ctypes
import os
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
from pathlib import Path

HERE = Path(__file__).resolve().parent
TIMEOUT = 30  # seconds


def eventually(condition, what, timeout=TIMEOUT, pause=0.02):
    """Calls `condition` every `pause` seconds until its result is true, and returns that."""
    deadline = time.monotonic() + timeout
    while not (result := condition()):
        if time.monotonic() > deadline:
            raise AssertionError(f"waited {timeout} s for: {what}")
        time.sleep(pause)
    return result


def run_tests():
    """Runs the tests that the command line names, and exits: with 77 and the reason if one was skipped."""
    result = unittest.main(module=None, exit=False).result
    for test, reason in result.skipped:
        print(f"{test}: Skipped\n{reason}")
    sys.exit(77 if result.skipped else not result.wasSuccessful())


def _end_with_parent():
    PR_SET_PDEATHSIG = 1
    ctypes.CDLL(None).prctl(PR_SET_PDEATHSIG, signal.SIGKILL)


class Session:
    screen = "1280x800"

    def __init__(self, bus=True, manager=True, panel=True, compositor=False):
        self.folder = Path(tempfile.mkdtemp(prefix="portolan-desktop-"))
        self.home = self.folder / "home"
        self._processes = []
        self.env = self._environment()
        self.x_server = self._start_x_server()
        if bus:
            self.bus = self._start_bus()
        if manager:
            self.spawn("xfwm4", f"--compositor={'on' if compositor else 'off'}")
            eventually(lambda: "window id" in self.run("xprop", "-root", "_NET_SUPPORTING_WM_CHECK"), "the window manager")
        self.panel = self.start_panel() if panel else None

    def __enter__(self):
        return self

    def __exit__(self, *_):
        for process in reversed(self._processes):
            if process.poll() is None:
                process.terminate()
        for process in self._processes:
            try:
                process.wait(TIMEOUT)
            except subprocess.TimeoutExpired:
                process.kill()
                process.wait()
            if process.stdout:
                process.stdout.close()
        # Services started by the bus may still write files while they exit, so the removal is repeated.
        for _ in range(20):
            shutil.rmtree(self.folder, ignore_errors=True)
            time.sleep(0.1)
            if not self.folder.exists():
                return

    def spawn(self, *command, log=None, **options):
        """Starts a program in the session; its output is appended to the file `log` in the session's folder."""
        with open(self.folder / (log or Path(command[0]).name + ".log"), "ab") as output:
            options = {"stdout": output, "stderr": output, "stdin": subprocess.DEVNULL, "env": self.env} | options
            process = subprocess.Popen(command, preexec_fn=_end_with_parent, **options)
        self._processes.append(process)
        return process

    def run(self, *command):
        """Runs a tool and returns its output; an empty string if it fails."""
        result = subprocess.run(command, env=self.env, capture_output=True, text=True, timeout=TIMEOUT)
        return result.stdout if result.returncode == 0 else ""

    def start_panel(self):
        """Starts the panel and waits until it shows status icons."""
        panel = self.spawn("xfce4-panel", "--disable-wm-check")
        eventually(self.has_notifier_host, "a panel with a status area")
        return panel

    def stop_panel(self):
        self.panel.kill()
        self.panel.wait()
        self.panel = None
        eventually(lambda: not self.has_notifier_host(), "the panel's end")

    def has_notifier_host(self):
        return "true" in self.run(
            "dbus-send", "--session", "--print-reply=literal", "--reply-timeout=1000", "--dest=org.kde.StatusNotifierWatcher",
            "/StatusNotifierWatcher", "org.freedesktop.DBus.Properties.Get", "string:org.kde.StatusNotifierWatcher",
            "string:IsStatusNotifierHostRegistered")

    def _environment(self):
        env = {name: os.environ[name] for name in ("PATH", "USER", "LOGNAME") if name in os.environ}
        env |= {"HOME": str(self.home), "LC_ALL": "C.UTF-8", "XDG_CURRENT_DESKTOP": "XFCE", "XDG_SESSION_TYPE": "x11"}
        for variable in ("CONFIG", "CACHE", "DATA", "STATE"):
            env[f"XDG_{variable}_HOME"] = str(self.home / variable.lower())
        env["XDG_RUNTIME_DIR"] = str(self.folder / "run")
        panel_settings = self.home / "config/xfce4/xfconf/xfce-perchannel-xml"
        panel_settings.mkdir(parents=True)
        shutil.copy(HERE / "xfce4-panel.xml", panel_settings)
        (self.folder / "run").mkdir(mode=0o700)
        return env

    def _start_x_server(self):
        reader, writer = os.pipe()
        server = self.spawn("Xvfb", "-displayfd", str(writer), "-screen", "0", self.screen + "x24", "-nolisten", "tcp", "-noreset",
                            pass_fds=[writer])
        os.close(writer)
        with os.fdopen(reader) as number:
            self.env["DISPLAY"] = ":" + number.readline().strip()
        return server

    def _start_bus(self):
        bus = self.spawn("dbus-daemon", "--session", "--nofork", "--print-address=1", stdout=subprocess.PIPE)
        self.env["DBUS_SESSION_BUS_ADDRESS"] = bus.stdout.readline().decode().strip()
        return bus
