# SPDX-License-Identifier: MIT
"""Faults of lsof and ps, which are replaced by scripts in the test's own mount namespace."""

import json
import os
import resource
import shutil
import signal
import subprocess
import time
from pathlib import Path

from faults import ANSWER, PORTOLANCTL, Fault, eventually

NO_SUCH_PID = 4_000_000  # above what the kernel gives by default


class Tools(Fault):
    def setUp(self):
        super().setUp()
        self.services = {}
        self.env = {"PORTOLAN_TOOLS": "external"}
        self.set_tool("ps", "echo '   01:30  0.5  1024'")

    def set_tool(self, name, script, mode=0o755):
        """Replaces the system's tool by a script."""
        path = self.folder / name
        is_new = not path.exists()
        path.write_bytes(script if isinstance(script, bytes) else b"#!/bin/sh\n" + script.encode("utf-8", "surrogateescape"))
        path.chmod(mode)
        if is_new:
            place = Path(shutil.which(name)).resolve()
            subprocess.run(["mount", "--bind", path, place], check=True)
            self.addCleanup(subprocess.run, ["umount", "--lazy", place], check=True)

    def set_lsof(self, listing, cwd="echo n/srv/shop"):
        self.set_tool("lsof", f"case $1 in\n-nP) {listing}\n;;\n-a) {cwd}\n;;\nesac\n")

    def list(self, **options):
        options.setdefault("env", self.env)
        return [(service["pid"], service["port"]) for service in self.listed("--no-probe", **options)]

    LISTING = "printf 'p41\\ncnode\\nn*:3000\\np42\\ncnode\\nn*:3001\\n'"
    BOTH = [(41, 3000), (42, 3001)]

    def test_t1_lsof_cannot_be_run(self):
        for mode, content in ((0o644, "exit 0\n"), (0o755, b"\x7fELF\x02\x01garbage"), (0o755, b"#!/no/such/interpreter\n")):
            self.set_tool("lsof", content, mode)
            self.assertEqual(self.list(), [])
        self.set_lsof(self.LISTING)
        self.assertEqual(self.list(), self.BOTH, "it recovers")

    def test_t2_ps_cannot_be_run(self):
        self.set_lsof(self.LISTING)
        self.set_tool("ps", "", 0o644)
        for service in self.listed("--no-probe", env=self.env):
            self.assertIsNone(service["stats"])

    def test_t3_a_tool_hangs(self):
        self.set_lsof(self.LISTING, cwd="printf 'n/srv/sh'; exec sleep 54321")
        start = time.monotonic()
        self.assertEqual(self.list(), self.BOTH)
        self.assertLess(time.monotonic() - start, 10)
        self.assert_none_runs("sleep 54321")

    def slow_t3_the_listing_hangs(self):
        self.set_lsof("printf 'p41\\ncnode\\nn*:30'; exec sleep 54321")
        start = time.monotonic()
        self.assertEqual(self.list(), [])
        self.assertLess(time.monotonic() - start, 20)
        self.assert_none_runs("sleep 54321")

    def test_t4_a_tool_ignores_sigterm_and_leaves_a_grandchild_at_the_pipe(self):
        self.set_lsof(self.LISTING, cwd="trap '' TERM; sleep 54321 & echo n/srv/shop; exit")
        self.assertEqual(self.list(), self.BOTH)
        self.assert_none_runs("sleep 54321")

    def test_t6_a_tool_floods(self):
        for flood in ("exec yes n1", "exec tr '\\0' x </dev/zero"):
            self.set_lsof(flood)
            self.assertEqual(self.list(), [])
        self.assertLess(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss, 400 << 10, "KiB")
        self.set_lsof("i=0; while [ $i -lt 300 ]; do echo \"p41\ncnode\nn*:$((3000 + i))\"; i=$((i + 1)); done")
        self.assertEqual(len(self.list()), 300)

    def test_t7_a_tool_floods_standard_error(self):
        self.set_lsof(f"head -c 10000000 /dev/zero >&2; {self.LISTING}")
        self.assertEqual(self.list(), self.BOTH)

    def test_t8_a_tool_fails_with_and_without_output(self):
        self.set_lsof(f"{self.LISTING}; exit 1")
        self.assertEqual(self.list(), self.BOTH)
        self.set_lsof("exit 0")
        self.assertEqual(self.list(), [])
        self.set_lsof(f"{self.LISTING}; kill -SEGV $$")
        self.assertEqual(self.list(), self.BOTH)

    def test_t9_output_is_cut(self):
        whole = "p41\ncnode\nPTCP\nn*:3000\np42\ncnode\nPTCP\nn*:3001\n"
        for cut in range(0, len(whole), 5):
            self.set_lsof(f"printf '%s' '{whole[:cut]}'")
            for service in self.list():
                self.assertIn(service, self.BOTH + [(42, 300), (42, 30), (42, 3), (41, 300), (41, 30), (41, 3)])

    def test_t10_output_is_odd_text(self):
        self.set_lsof("printf 'p41\\ncnode\\377\\nn*:3000\\n'")
        self.assertEqual(self.list(), [], "what is not UTF-8 is no output")
        self.set_lsof("printf 'p41\\ncnode\\\\x41^[\\nn*:3000'")
        self.assertEqual(self.list(), [(41, 3000)])
        self.set_lsof("printf 'p41\\r\\ncnode\\r\\nn*:3000\\r\\np42\\ncnode\\nn*:3001\\n'")
        self.assertEqual(self.list(), [(42, 3001)])

    def test_t11_fields_are_unknown_or_out_of_order(self):
        self.set_lsof("printf 'n*:1\\ncnode\\nf3\\np41\\nzzz\\nfcwd\\ncnode\\nn*:3000\\np42\\np42\\ncnode\\nn*:3001\\np43\\ncnode\\n'")
        self.assertEqual(self.list(), self.BOTH)

    def test_t12_numbers_are_odd(self):
        odd = ["n*:*", "n*:http", "n*:", "n127.0.0.1:1->127.0.0.1:2", "n*:99999999999999999999", "n10.0.0.1:80"]
        self.set_lsof("printf '" + "\\n".join(["p41", "cnode", *odd, "p99999999999999999999", "cnode", "n*:80", "px", "cnode",
                                                "n*:81"]) + "\\n'")
        self.assertEqual(self.list(), [])

    def test_t13_sockets_are_shared(self):
        self.set_lsof("printf 'p41\\ncnode\\nn*:3000\\nn[::]:3000\\nn127.0.0.1:3001\\np42\\ncnode\\nn*:3000\\n'")
        self.assertEqual(self.list(), [(41, 3000), (42, 3000), (41, 3001)])

    def test_t14_working_folders_are_odd(self):
        for cwd, folder in (("n/proc/41/cwd (readlink: Permission denied)", None), ("n/no/such (deleted)", None),
                            ("nrelative", "relative"), ("n/" + "x" * 5000, "/" + "x" * 5000), ("n/a\\\\nb", "/a\nb")):
            self.set_lsof("printf 'p41\\ncnode\\nn*:3000\\n'", cwd=f"printf '{cwd}\\n'")
            self.assertEqual([service["folderPath"] for service in self.listed("--no-probe", env=self.env)], [folder], cwd[:40])

    def test_t15_ps_prints_oddly(self):
        self.set_lsof("printf 'p41\\ncnode\\nn*:3000\\n'")
        for text, stats in (("1-02:03:04  0.5  1024", (93784, 0.5, 1)), ("4321-00:00:00 6400 2048 extra", (373334400, 6400, 2)),
                            ("00:00  0.0     0", (0, 0, 0)), ("- - -", (0, 0, 0)), ("01:00 0,5 1024", (60, 0, 1)), ("", None)):
            self.set_tool("ps", f"echo '{text}'")
            service, = self.listed("--no-probe", env=self.env | {"LC_NUMERIC": "de_DE.UTF-8"})
            found = service["stats"] and tuple(service["stats"][key] for key in ("uptimeSeconds", "cpuPercent", "memoryMB"))
            self.assertEqual(found, stats, text)

    def test_t16_the_process_ends_meanwhile(self):
        self.set_lsof(f"printf 'p{NO_SUCH_PID}\\ncnode\\nn*:3000\\n'", cwd="exit 1")
        self.set_tool("ps", "exit 1")
        service, = self.listed("--no-probe", env=self.env)
        self.assertEqual((service["folderPath"], service["stats"]), (None, None))

    def test_t17_nothing_can_be_started(self):
        self.set_lsof(self.LISTING)
        for descriptors in range(4, 24, 2):
            run = self.portolanctl("list", "--json", "--no-probe", env=self.env,
                                   limits={resource.RLIMIT_NOFILE: (descriptors, descriptors)})
            self.assertIn((run.returncode, run.stderr), ((0, b""), (127, run.stderr)), descriptors)
        self.assertEqual(self.list(), self.BOTH)

    def test_t20_signals_are_ignored_and_standard_streams_closed(self):
        self.set_lsof(self.LISTING)
        script = f'trap "" CHLD PIPE; exec {PORTOLANCTL} list --json --no-probe <&- 2>&-'
        run = subprocess.run(["sh", "-c", script], capture_output=True, timeout=30, env=os.environ | self.env, check=True)
        self.assertIn(b"3001", run.stdout)
        self.assertEqual(self.list(limits={resource.RLIMIT_NOFILE: (20000, 20000)}), self.BOTH)

    def test_t21_the_program_ends_during_a_scan(self):
        self.set_lsof("exec sleep 54321")
        watch = subprocess.Popen([PORTOLANCTL, "watch", "--json"], stdout=subprocess.PIPE, env=os.environ | self.env)
        self.addCleanup(watch.stdout.close)
        eventually(lambda: subprocess.run(["pgrep", "-f", "^sleep 54321"], capture_output=True).returncode == 0, "the tool")
        start = time.monotonic()
        watch.send_signal(signal.SIGTERM)
        self.assertEqual(watch.wait(10), 0)
        self.assertLess(time.monotonic() - start, 3)
        self.assert_none_runs("sleep 54321")

    def test_t22_the_surroundings_are_odd(self):
        self.set_lsof(self.LISTING)
        for odd in ({"LC_ALL": "tr_TR.UTF-8"}, {"LC_ALL": "POSIX"}, {"LC_ALL": "no_SUCH"}, {"PATH": ""}, {"HOME": ""},
                    {"HOME": "/no/such"}, {"TZ": "Mars/Olympus"}):
            self.assertEqual(self.list(env=self.env | odd), self.BOTH, odd)
        gone = self.folder / "gone"
        gone.mkdir()
        script = f"cd {gone}; rmdir {gone}; exec {PORTOLANCTL} list --json --no-probe"
        run = subprocess.run(["sh", "-c", script], capture_output=True, timeout=30, env=os.environ | self.env, check=True)
        self.assertIn(b"3001", run.stdout)

    def assert_none_runs(self, command):
        eventually(lambda: subprocess.run(["pgrep", "-f", f"^{command}"], capture_output=True).returncode == 1,
                   f"the end of {command}", timeout=5)


class Kernel(Fault):
    """The same with the kernel source."""

    def test_t18_many_services(self):
        _, ports = self.start_servers(1000, ANSWER)
        self.assertEqual(set(self.health_by_port(self.listed())), set(ports))

    def test_t19_the_program_was_stopped_for_a_while(self):
        _, (port,) = self.start_servers(1, ANSWER)
        watch = subprocess.Popen([PORTOLANCTL, "watch", "--json"], stdout=subprocess.PIPE)
        self.addCleanup(watch.stdout.close)
        self.assertIn(b"healthy", watch.stdout.readline() + watch.stdout.readline())
        watch.send_signal(signal.SIGSTOP)
        time.sleep(6)
        watch.send_signal(signal.SIGCONT)
        for _ in range(3):
            line = watch.stdout.readline()
            self.assertIn(str(port).encode(), line)
            self.assertNotIn(b"unreachable", line)
        watch.terminate()
        self.assertEqual(watch.wait(10), 0)

    def test_t23_other_users_servers(self):
        self.start_servers(1, ANSWER)
        self.folder.chmod(0o755)
        copy = self.folder / "portolanctl"
        shutil.copy(PORTOLANCTL, copy)
        try:
            run = subprocess.run([copy, "list", "--json"], capture_output=True, timeout=30, user=65534, check=False)
        except OSError as error:
            print(f"{self.id()}: Skipped\nonly root can become another user: {error}", flush=True)
            os._exit(77)  # what ctest takes for a skipped test
        self.assertEqual((run.returncode, json.loads(run.stdout), run.stderr), (0, [], b""))
