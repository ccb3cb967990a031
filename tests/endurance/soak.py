#!/usr/bin/python3
# SPDX-License-Identifier: MIT
"""Drives the panel in a session of its own for a long time and compares what it uses at the end with what it used before.

    soak.py MINUTES

Servers come and go, answer well or badly, and are stopped with the panel's own button; the popover is opened, closed, searched
and detached; rows are pinned; the desktop's panel is restarted; the program is stopped and continued. Exits with 1 if memory,
descriptors, threads or children have grown, if the list was wrong, or if the program printed anything.
"""

import os
import random
import signal
import subprocess
import sys
import time
from pathlib import Path

HERE = Path(__file__).resolve().parent
ISOLATED = "PORTOLAN_SOAK_ISOLATED"
sys.path.append(str(HERE.parent / "desktop"))

from driver import Desktop, eventually  # noqa: E402
import watch_consistency  # noqa: E402

BEHAVIOURS = list(watch_consistency.BEHAVIOURS)
ALLOWED = {"memory": 4096, "descriptors": 0, "threads": 0, "children": 0}  # growth; memory in KiB


def usage(pid):
    status = dict(line.split(":", 1) for line in Path(f"/proc/{pid}/status").read_text().splitlines())
    children = [child for path in Path(f"/proc/{pid}/task").glob("*/children") for child in path.read_text().split()]
    return {"memory": int(status["VmRSS"].split()[0]), "descriptors": len(os.listdir(f"/proc/{pid}/fd")),
            "threads": int(status["Threads"]), "children": len(children)}


class Soak:
    def __init__(self, desktop, chance):
        self.desktop = desktop
        self.chance = chance
        self.servers = {}  # by name
        self.started = 0
        self.counts = {}
        self.window = None

    def start_server(self):
        if len(self.servers) >= 12:
            return self.end_server()
        self.started += 1
        name = f"server-{self.started}"
        folder = self.desktop.home / name
        folder.mkdir()
        process = self.desktop.spawn(sys.executable, str(HERE / "watch_consistency.py"), "--serve",
                                     self.chance.choice(BEHAVIOURS), cwd=folder, stdout=subprocess.PIPE, log="server.log")
        process.stdout.readline()
        self.servers[name] = process

    def end_server(self):
        if self.servers:
            name = self.chance.choice(list(self.servers))
            process = self.servers.pop(name)
            process.send_signal(self.chance.choice((signal.SIGTERM, signal.SIGKILL)))
            process.wait()

    def toggle_popover(self):
        self.desktop.click_icon()
        time.sleep(0.5)

    def open(self):
        d = self.desktop
        if not d.popover():
            d.click_icon()
            eventually(d.popover, "the popover", timeout=10)

    def search(self):
        self.open()
        self.desktop.press("ctrl+k")
        self.desktop.type(self.chance.choice(("server", "1", "zzz", ":8")))
        time.sleep(0.3)
        self.desktop.press("ctrl+a", "BackSpace")

    def row(self):
        """The centre of a row that is shown, or None."""
        self.open()
        rows = list(self.desktop.all_shown("server-", role="list item"))
        return self.chance.choice(rows) if rows else None

    def hover(self):
        if row := self.row():
            self.desktop.move_to(*row.centre)

    def pin(self):
        if row := self.row():
            self.desktop.click(*row.centre, button=3)
            time.sleep(0.4)
            entry = self.desktop.shown("Pin to Top") or self.desktop.shown("Unpin")
            if entry:
                self.desktop.click(*entry.centre)
            else:
                self.desktop.press("Escape")

    def stop_server(self):
        if row := self.row():
            name = row.name
            self.desktop.move_to(*row.centre)
            time.sleep(0.3)
            if button := self.desktop.shown("Stop"):
                self.desktop.click(*button.centre)
                time.sleep(2)
                for server, process in list(self.servers.items()):
                    if server in name and process.poll() is not None:
                        del self.servers[server]

    def detach(self):
        d = self.desktop
        self.open()
        if button := d.shown("Open in window"):
            d.click(*button.centre)
            time.sleep(1)
        if window := d.window():
            d.run("xdotool", "windowactivate", "--sync", window.id)
            d.press("alt+F4")
            time.sleep(0.5)

    def restart_panel(self):
        d = self.desktop
        d.stop_panel()
        time.sleep(1)
        d.panel = d.start_panel()
        d.shown_icon()

    def suspend(self):
        program = self.desktop.program
        program.send_signal(signal.SIGSTOP)
        time.sleep(self.chance.uniform(0.5, 4))
        program.send_signal(signal.SIGCONT)

    def step(self):
        actions = ([self.start_server] * 6 + [self.end_server] * 5 + [self.toggle_popover] * 3 + [self.search] * 2 +
                   [self.hover] * 2 + [self.pin, self.stop_server, self.detach, self.restart_panel, self.suspend])
        action = self.chance.choice(actions)
        self.counts[action.__name__] = self.counts.get(action.__name__, 0) + 1
        try:
            action()
        except Exception as error:  # a row or a window has gone in the meantime
            self.counts["missed"] = self.counts.get("missed", 0) + 1
            if not self.desktop.is_running():
                raise RuntimeError("the program has ended") from error

    def settle(self):
        """Ends all servers and closes all windows; returns what the program uses once the list is empty."""
        d = self.desktop
        for process in self.servers.values():
            process.kill()
            process.wait()
        self.servers.clear()
        if window := d.window():
            d.run("xdotool", "windowactivate", "--sync", window.id)
            d.press("alt+F4")
        self.open()
        eventually(lambda: d.shown("Nothing running"), "an empty list", timeout=60, pause=0.5)
        d.press("Escape")
        time.sleep(12)
        return usage(d.program.pid)


def soak(minutes, seed):
    problems = []
    with Desktop() as desktop:
        desktop.enable_accessibility()
        desktop.start("--background")
        desktop.shown_icon()
        run = Soak(desktop, random.Random(seed))
        # Caches fill in the first ten minutes: everything is done many times before the first measurement.
        end = time.monotonic() + 60 * minutes
        warm = time.monotonic() + min(600, 20 * minutes)
        while time.monotonic() < warm:
            run.step()
            time.sleep(run.chance.uniform(0, 0.5))
        before = run.settle()
        print("before:", before, flush=True)
        reported = time.monotonic()
        while time.monotonic() < end:
            run.step()
            time.sleep(run.chance.uniform(0, 1))
            if time.monotonic() - reported > 300:
                reported = time.monotonic()
                print(time.strftime("%H:%M:%S"), usage(desktop.program.pid), flush=True)
        after = run.settle()
        print("after: ", after)
        print(f"seed {seed}, {minutes} minutes:", run.counts)
        desktop.program.terminate()
        if (status := desktop.program.wait(30)) != 0:
            problems.append(f"exit status {status}")
        if desktop.messages():
            problems.append(f"messages: {desktop.messages()}")
    problems += [f"{name} grew from {before[name]} to {after[name]}" for name, most in ALLOWED.items()
                 if after[name] - before[name] > most]
    for problem in problems:
        print("ERROR:", problem)
    print("failed" if problems else "passed")
    return 1 if problems else 0


def main():
    if ISOLATED not in os.environ:
        os.environ[ISOLATED] = "1"
        names = ["unshare", "--net", "--pid", "--fork", "--kill-child", "--mount-proc"]
        if os.geteuid() != 0:
            names[1:1] = ["--user", "--map-root-user"]
        os.execvp(names[0], [*names, "sh", "-c", 'ip link set lo up && "$@"', "sh", sys.executable, "-B", *sys.argv])
    return soak(float(sys.argv[1]), int(sys.argv[2]) if len(sys.argv) > 2 else random.randrange(1000000))


if __name__ == "__main__":
    sys.exit(main())
