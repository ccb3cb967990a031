#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Compares the lists of `portolanctl watch --json` with the servers that run.

Starts, stops and restarts small servers at random and checks that every list contains those that run and none that have
ended. Measures the program's memory, threads and descriptors meanwhile. Prints the results; exits with 1 if a check fails.

    watch_consistency.py build/release/bin/portolanctl --seconds 600
"""

import argparse
import dataclasses
import http.server
import json
import os
import queue
import random
import signal
import statistics
import subprocess
import sys
import tempfile
import threading
import time

# The kinds of servers, and the health that must be reported for each.
BEHAVIOURS = {
    "ok": {"state": "healthy", "status": 200},
    "missing": {"state": "healthy", "status": 404},
    "failing": {"state": "healthy", "status": 500},
    "hangs up": {"state": "unreachable"},
}
REFRESH_LIMIT = 20  # seconds until the next list at most: the interval, a slow scan and the slowest probe


def serve(behaviour, port):
    """The server process: listens on 127.0.0.1, prints its port, and serves until it is killed."""

    class Handler(http.server.BaseHTTPRequestHandler):
        def handle(self):
            if behaviour != "hangs up":  # closes the connection without a response
                super().handle()

        def do_HEAD(self):
            self.send_response(BEHAVIOURS[behaviour]["status"])
            self.end_headers()

        def log_message(self, *_):
            pass

    class Server(http.server.ThreadingHTTPServer):
        def handle_error(self, *_):
            pass

    with Server(("127.0.0.1", port), Handler) as server:
        print(server.server_address[1], flush=True)
        server.serve_forever()


@dataclasses.dataclass
class Server:
    """A server process. It certainly listens from `up` until `closing`, and certainly not after `gone`."""

    process: subprocess.Popen
    port: int
    name: str
    behaviour: str
    up: float
    closing: float = float("inf")
    gone: float = float("inf")

    def stop(self, how):
        self.closing = time.monotonic()
        self.process.send_signal(how)
        self.process.wait()
        self.process.stdout.close()
        self.gone = time.monotonic()


class Servers:
    """All servers of this run, including those that have ended."""

    def __init__(self, folder, chance, limit):
        self.folder = folder
        self.chance = chance
        self.limit = limit
        self.all = {}  # by pid
        self.running = []
        self.counts = dict.fromkeys(("started", "stopped", "restarted"), 0)

    def start(self, port=0, name=None, behaviour=None):
        name = name or f"Server {len(self.all)}"  # how the project name server-N is displayed
        behaviour = behaviour or self.chance.choice(list(BEHAVIOURS))
        folder = os.path.join(self.folder, name)
        os.makedirs(folder, exist_ok=True)
        with open(os.path.join(folder, "package.json"), "w", encoding="utf-8") as file:
            json.dump({"name": name.lower().replace(" ", "-")}, file)
        process = subprocess.Popen(
            [sys.executable, os.path.abspath(__file__), "--serve", behaviour, "--port", str(port)],
            cwd=folder, stdout=subprocess.PIPE, text=True)
        line = process.stdout.readline()
        if not line:  # another process has taken the port meanwhile
            process.wait()
            return
        server = Server(process, int(line), name, behaviour, time.monotonic())
        self.all[process.pid] = server
        self.running.append(server)
        self.counts["started"] += 1

    def stop(self):
        server = self.running.pop(self.chance.randrange(len(self.running)))
        server.stop(self.chance.choice((signal.SIGTERM, signal.SIGKILL)))
        self.counts["stopped"] += 1
        return server

    def restart(self):
        old = self.stop()
        self.counts["restarted"] += 1
        self.start(old.port, old.name, old.behaviour)

    def change(self):
        actions = [self.start] if len(self.running) < self.limit else []
        if self.running:
            actions += [self.stop, self.restart]
        self.chance.choice(actions)()

    def stop_all(self):
        for server in self.running:
            server.stop(signal.SIGKILL)
        self.running.clear()


class Watch:
    """The program under test: the lists it prints, with the time at which each was read, and its resource use."""

    def __init__(self, portolanctl, config):
        self.process = subprocess.Popen(
            [portolanctl, "watch", "--json"], stdout=subprocess.PIPE, stdin=subprocess.DEVNULL, text=True,
            env={**os.environ, "XDG_CONFIG_HOME": config})
        self.lists = queue.Queue()
        threading.Thread(target=self._read, daemon=True).start()

    def _read(self):
        for line in self.process.stdout:
            self.lists.put((time.monotonic(), line))
        self.lists.put(None)

    def usage(self):
        """Resident memory in KiB, number of threads, number of open descriptors."""
        with open(f"/proc/{self.process.pid}/status", encoding="utf-8") as file:
            status = dict(line.split(":", 1) for line in file)
        descriptors = len(os.listdir(f"/proc/{self.process.pid}/fd"))
        return int(status["VmRSS"].split()[0]), int(status["Threads"]), descriptors

    def end(self):
        """Sends SIGTERM and returns the exit status."""
        self.process.terminate()
        try:
            return self.process.wait(10)
        except subprocess.TimeoutExpired:
            self.process.kill()
            return "none within 10 s"


def differences(servers, services, earlier, before_that):
    """Yields a description of each error in a list. Its scan began after `earlier`, when the previous list was printed; the
    scan of that one began after `before_that`."""
    shown = {service["pid"]: service for service in services}
    if len(shown) != len(services) and len({service["id"] for service in services}) != len(services):
        yield "one service twice"
    for server in servers.all.values():
        service = shown.get(server.process.pid)
        present = service is not None and service["port"] == server.port
        if server.gone < earlier and present:
            yield f"{server.name} on {server.port} is gone and still shown"
        if server.up < earlier and server.closing == float("inf") and not present:
            yield f"{server.name} on {server.port} is there and not shown"
        if not present or server.closing < float("inf"):
            continue  # the other values may be missing for a server that ended during the scan
        if service["displayName"] != server.name:
            yield f"{server.name} is called {service['displayName']}"
        health = {key: service["health"].get(key) for key in BEHAVIOURS[server.behaviour]}
        is_settled = server.up < before_that
        if is_settled and health != BEHAVIOURS[server.behaviour]:
            yield f"{server.name} is {server.behaviour} and has the health {service['health']}"
        if is_settled and service["stats"] is None:
            yield f"{server.name} has no statistics"


def growth(samples, unit):
    """The medians of the first and of the last third of the samples, as text, and their difference."""
    third = max(1, len(samples) // 3)
    first, last = statistics.median(samples[:third]), statistics.median(samples[-third:])
    return f"{first:g} -> {last:g}{unit} (most {max(samples):g})", last - first


def check(arguments):
    chance = random.Random(arguments.seed)
    problems = []
    usages = []
    with tempfile.TemporaryDirectory(prefix="portolan-servers-") as folder:
        servers = Servers(folder, chance, arguments.servers)
        watch = Watch(arguments.portolanctl, os.path.join(folder, "config"))
        try:
            lists = follow(arguments, chance, servers, watch, problems, usages)
            status = watch.end()
        finally:
            servers.stop_all()
            watch.process.kill()
    if status != 0:
        problems.append(f"exit status after SIGTERM: {status}")

    print(f"seed {arguments.seed}, {arguments.seconds:g} s, {lists} lists; servers:", servers.counts)
    warm = usages[len(usages) // 5:]  # without the first fifth, in which caches are filled
    for name, unit, samples, allowed in zip(("memory", "threads", "descriptors"), (" KiB", "", ""), zip(*warm),
                                            (1024, 0, 2)):
        text, grown = growth(samples, unit)
        print(f"{name}: {text}")
        if grown > allowed:
            problems.append(f"{name} grew: {text}")
    if lists < arguments.seconds / REFRESH_LIMIT:
        problems.append(f"only {lists} lists")
    for problem in problems:
        print("ERROR:", problem)
    print("failed" if problems else "passed")
    return 1 if problems else 0


def follow(arguments, chance, servers, watch, problems, usages):
    """Changes servers and compares lists until the time is over; returns the number of lists."""
    arrivals = [float("-inf"), float("-inf")]
    begin = time.monotonic()
    next_change = begin
    compared = 0
    while time.monotonic() < begin + arguments.seconds:
        if time.monotonic() >= next_change:
            servers.change()
            next_change = time.monotonic() + chance.uniform(0.1, arguments.pace)
        try:
            received = watch.lists.get(timeout=max(0, min(1, next_change - time.monotonic())))
        except queue.Empty:
            since = max(arrivals[-1], begin)
            if time.monotonic() - since > REFRESH_LIMIT:
                problems.append(f"no list for {REFRESH_LIMIT} s")
                arrivals.append(time.monotonic())
            continue
        if received is None:
            problems.append("the program ended by itself")
            break
        arrived, line = received
        found = list(differences(servers, json.loads(line), arrivals[-1], arrivals[-2]))
        problems += [f"list {compared} at {arrived - begin:.1f} s: {difference}" for difference in found]
        arrivals.append(arrived)
        usages.append(watch.usage())
        compared += 1
    return compared


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", 1)[0])
    parser.add_argument("portolanctl", nargs="?", help="the program to watch")
    parser.add_argument("--seconds", type=float, default=600, help="how long (600)")
    parser.add_argument("--servers", type=int, default=12, help="how many servers at once at most (12)")
    parser.add_argument("--pace", type=float, default=4, help="seconds between two changes at most (4)")
    parser.add_argument("--seed", type=int, default=random.randrange(1000000), help="to repeat a run")
    parser.add_argument("--serve", choices=list(BEHAVIOURS), help=argparse.SUPPRESS)
    parser.add_argument("--port", type=int, default=0, help=argparse.SUPPRESS)
    arguments = parser.parse_args()
    if arguments.serve:
        return serve(arguments.serve, arguments.port)
    if not arguments.portolanctl:
        parser.error("which portolanctl?")
    return check(arguments)


if __name__ == "__main__":
    sys.exit(main())
