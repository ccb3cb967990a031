# SPDX-License-Identifier: MIT
"""A server whose folder is on a file system that never answers."""

import json
import os
import signal
import subprocess
import time

from faults import ANSWER, PORTOLANCTL, Fault, HungMount


class DeadMount(Fault):
    def setUp(self):
        super().setUp()
        point = self.folder / "dead"
        point.mkdir()
        self.mount = HungMount(point)
        self.addCleanup(self.mount.release)
        _, self.ports = self.start_servers(1, ANSWER, folder=point)
        _, others = self.start_servers(1, ANSWER)
        self.ports += others

    def test_list_prints_and_returns(self):
        start = time.monotonic()
        health = self.health_by_port(self.listed(timeout=30))
        self.assertLess(time.monotonic() - start, 15)
        self.assertEqual(health, dict.fromkeys(self.ports, ("healthy", 200)))
        self.assertTrue(self.mount.await_question())

    def test_two_of_them_cost_the_other_servers_nothing(self):
        other = self.folder / "dead too"
        other.mkdir()
        mount = HungMount(other)
        self.addCleanup(mount.release)
        ports = []
        for name, folder in [("before", None), ("dead too", other), ("after", None)]:
            if not folder:
                folder = self.folder / name
                folder.mkdir()
                (folder / "package.json").write_text(json.dumps({"name": name, "devDependencies": {"vite": "1"}}))
            ports += self.start_servers(1, ANSWER, folder=folder)[1]
        listed = {service["port"]: (service["displayName"], service["framework"]) for service in self.listed(timeout=30)}
        self.assertEqual(listed[ports[0]], ("Before", "Vite"))
        self.assertEqual(listed[ports[2]], ("After", "Vite"))
        self.assertIn(ports[1], listed)

    def test_watch_ends(self):
        watch = subprocess.Popen([PORTOLANCTL, "watch", "--json"], stdout=subprocess.PIPE,
                                 env=os.environ | {"XDG_CONFIG_HOME": str(self.folder)})
        self.addCleanup(watch.stdout.close)
        watch.stdout.readline()
        watch.send_signal(signal.SIGTERM)
        self.assertEqual(watch.wait(10), 0)
