# SPDX-License-Identifier: MIT
"""The panel in a session of its own, with harmful servers and file systems."""

import os
import resource
import signal
import subprocess
import sys
import time
from pathlib import Path

from driver import Scenario, eventually
from faults import ANSWER, Fault, HungMount


SERVER = """import socket
server = socket.create_server(("127.0.0.1", 7777))
while True:
    connection, _ = server.accept()
    connection.recv(999)
    connection.sendall(b"HTTP/1.0 200 OK\\r\\n\\r\\n")
    connection.close()
"""


def resident(pid):
    """The memory of a process in MB."""
    status = dict(line.split(":", 1) for line in Path(f"/proc/{pid}/status").read_text().splitlines())
    return int(status["VmRSS"].split()[0]) / 1024


def start_with_pid(pid, *command, **options):
    """Starts a program as the process `pid`, which must be free; this needs a pid namespace of the test's own."""
    for _ in range(100):
        Path("/proc/sys/kernel/ns_last_pid").write_text(str(pid - 1))
        process = subprocess.Popen(command, **options)
        if process.pid == pid:
            return process
        process.kill()
        process.wait()
    raise AssertionError(f"no process got the id {pid}")


class Panel(Scenario, Fault):
    needs_accessibility = True

    def setUp(self):
        Fault.setUp(self)
        Scenario.setUp(self)

    def store(self, settings):
        path = self.desktop.home / "config/portolan/settings.json"
        path.parent.mkdir(parents=True)
        path.write_text(settings)

    def test_stop_reaches_nobody_who_got_the_pid_since(self):
        d = self.desktop
        self.store('{"autoRefresh": false}')
        server, _ = d.serve("storefront")
        d.start("--background")
        d.open_popover()
        d.find("storefront", role="list item")
        d.settle()
        d.move_to(*d.find("storefront", role="list item").centre)
        d.find("Stop")
        server.kill()
        server.wait()
        stranger = start_with_pid(server.pid, "sleep", "1000")
        self.addCleanup(stranger.wait)
        self.addCleanup(stranger.kill)

        def stopped():
            # A press that comes too early, on a busy machine, is discarded.
            if stop := d.shown("Stop"):
                d.click(*stop.centre)
            return not d.shown("storefront", role="list item")

        eventually(stopped, "the row to go", pause=0.6)
        time.sleep(3)  # by then SIGKILL would have followed
        self.assertIsNone(stranger.poll())
        self.assertIsNone(d.shown("storefront", role="list item"))

    def test_a_menu_reaches_nobody_who_got_the_pid_and_the_port_since(self):
        d = self.desktop
        (d.home / "storefront").mkdir()
        (d.home / "newcomer").mkdir()
        command = [sys.executable, "-S", "-E", "-c", SERVER]
        server = subprocess.Popen(command, cwd=d.home / "storefront")
        d.start("--background")
        d.open_popover()
        d.find("storefront", role="list item")
        d.settle()
        d.click(*d.find("storefront", role="list item").centre, button=3)
        d.find("Stop Server")
        server.kill()
        server.wait()
        newcomer = start_with_pid(server.pid, *command, cwd=d.home / "newcomer")
        self.addCleanup(newcomer.wait)
        self.addCleanup(newcomer.kill)
        d.find("newcomer", role="list item")
        eventually(lambda: not d.shown("Stop Server"), "the menu to close with its row")
        self.assertIsNone(newcomer.poll())

    def test_ends_beside_a_dead_mount(self):
        point = self.folder / "dead"
        point.mkdir()
        mount = HungMount(point)
        self.addCleanup(mount.release)
        self.start_servers(1, ANSWER, folder=point)
        d = self.desktop
        d.serve("storefront")
        d.start("--background")
        d.open_popover()
        mount.await_question()
        d.find("dead", role="list item")
        d.find("storefront", role="list item")
        d.program.terminate()
        start = time.monotonic()
        self.assert_ends()
        self.assertLess(time.monotonic() - start, 5)

    def check_silent_servers(self, count, soft):
        self.start_servers(count)
        self.start_servers(30, ANSWER, folder=self.desktop.home)
        soft_before, hard = resource.getrlimit(resource.RLIMIT_NOFILE)
        resource.setrlimit(resource.RLIMIT_NOFILE, (soft, hard))
        d = self.desktop
        d.start("--background")
        resource.setrlimit(resource.RLIMIT_NOFILE, (soft_before, hard))
        d.open_popover()
        eventually(lambda: d.shown("30/"), "the honest servers to be seen as running", timeout=240, pause=1)
        self.assertLess(len(os.listdir(f"/proc/{d.program.pid}/fd")), 600)
        d.press("Escape")
        eventually(lambda: not d.popover(), "the popover to close")
        d.open_popover()

    def slow_lives_with_thousands_of_silent_servers(self):
        self.check_silent_servers(3000, 1024)

    def slow_lives_with_them_at_a_low_limit(self):
        self.check_silent_servers(3000, 32)

    def memory_after(self, *answer):
        """The memory of the panel ten seconds after it has probed 1,000 servers."""
        d = self.desktop
        server, ports = self.start_servers(1000, *answer)
        d.start("--background")
        # The probes have begun, and all of them have ended.
        sockets = lambda: sum(1 for fd in os.scandir(f"/proc/{d.program.pid}/fd"))
        eventually(lambda: sockets() > 60, "the probes to begin", pause=0.005)
        time.sleep(13)
        server.kill()
        time.sleep(10)
        memory = resident(d.program.pid)
        d.program.terminate()
        self.assert_ends()
        return memory

    def slow_endless_headers_leave_no_memory_behind(self):
        self.store('{"autoRefresh": true}')
        honest = self.memory_after(ANSWER[:0])
        for name, start, chunk in (("one endless line", b"HTTP/1.1 200 OK\r\nX: ", b"x" * 4096),
                                   ("one endless Location", b"HTTP/1.1 302 Found\r\nLocation: /", b"x" * 4096),
                                   ("endless lines", b"HTTP/1.1 200 OK\r\n", b"X: y\r\n" * 700),
                                   ("endless status", b"HTTP/1.1 200 ", b"x" * 4096)):
            with self.subTest(name):
                hostile = self.memory_after(start, chunk)
                print(f"{name}: {hostile:.1f} MB, beside {honest:.1f} MB with silent servers", flush=True)
                self.assertLess(hostile - honest, 5)
