# SPDX-License-Identifier: MIT
"""Thousands of servers that accept and stay silent, and few descriptors."""

import os
import resource
import time

from faults import ANSWER, Fault, eventually

HARD = min(4096, resource.getrlimit(resource.RLIMIT_NOFILE)[1])


class Descriptors(Fault):
    def test_honest_servers_among_silent_ones(self):
        for soft in (32, 1024):
            with self.subTest(soft=soft):
                self.check(550, (soft, HARD))

    def slow_honest_servers_among_thousands_of_silent_ones(self):
        for soft in (32, 256, 1024):
            with self.subTest(soft=soft):
                self.check(3000, (soft, HARD))

    def test_a_hard_limit_is_kept_within(self):
        self.check(60, (64, 64))

    def test_programs_that_are_started_get_the_limit_of_before(self):
        _, (port,) = self.start_servers(1, ANSWER)
        opener = self.folder / "xdg-open"
        seen = self.folder / "seen"
        opener.write_text(f"#!/bin/sh\nulimit -Sn > {seen}.new; mv {seen}.new {seen}\n")
        opener.chmod(0o755)
        run = self.portolanctl("open", str(port), limits={resource.RLIMIT_NOFILE: (1000, HARD)},
                               env={"PATH": f"{self.folder}:{os.environ['PATH']}"})
        self.assertEqual((run.returncode, run.stderr), (0, b""))
        eventually(seen.exists, "the program to be started")
        self.assertEqual(seen.read_text(), "1000\n")

    def check(self, silent_count, limits):
        silent_server, silent = self.start_servers(silent_count)
        honest_server, honest = self.start_servers(30, ANSWER)
        start = time.monotonic()
        services = self.listed(timeout=300, limits={resource.RLIMIT_NOFILE: limits})
        print(f"{silent_count} silent, limits {limits}: {time.monotonic() - start:.1f} s", flush=True)
        for server in (silent_server, honest_server):
            server.kill()
            server.wait()
        health = self.health_by_port(services)
        self.assertEqual({port: health.get(port) for port in honest}, dict.fromkeys(honest, ("healthy", 200)))
        self.assertEqual({port: health.get(port) for port in silent}, dict.fromkeys(silent, ("unreachable", None)))
