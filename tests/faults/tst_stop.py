# SPDX-License-Identifier: MIT
"""Stopping uncooperative servers, with the real program. The panel's own button is in tst_panel.py."""

import os
import signal
import subprocess
import sys
import time
from pathlib import Path

from faults import ANSWER, PORTOLANCTL, Fault, eventually


class Stop(Fault):
    def stop(self, *operands, timeout=30):
        return self.portolanctl("stop", *map(str, operands), timeout=timeout)

    def python(self, code):
        """A process that runs `code`, in which `listen()` listens and prints the port; returns it and the port."""
        head = ("import os, signal, socket, subprocess, sys, time\n"
                "def listen(port=0):\n"
                "    s = socket.create_server(('127.0.0.1', port)); s.set_inheritable(True)\n"
                "    print(s.getsockname()[1], flush=True); return s\n")
        process = subprocess.Popen([sys.executable, "-c", head + code], stdout=subprocess.PIPE)
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process, int(process.stdout.readline())

    def test_s2_the_process_became_another_program(self):
        process, port = self.python("s = listen(); os.execv(sys.executable, [sys.executable, '-c', 'import time; time.sleep(1000)'])")
        eventually(lambda: b"time.sleep" in Path(f"/proc/{process.pid}/cmdline").read_bytes(), "the other program")
        self.assertEqual(self.stop(port).returncode, 0)  # it is the same process, and it holds the socket
        self.assertEqual(process.wait(5), -signal.SIGTERM)

    def test_s3_what_must_not_be_signalled(self):
        for operand in ("1-80", f"{os.getpid()}-80", "0-80", "-1-80", "4000000-80"):
            run = self.stop("--", operand)
            self.assertNotEqual(run.returncode, 0, operand)

    def test_s4_it_ignores_sigterm(self):
        process, port = self.python("signal.signal(15, signal.SIG_IGN); s = listen(); time.sleep(1000)")
        self.assertEqual(self.stop(port).returncode, 0)
        self.assertEqual(process.wait(5), -signal.SIGKILL)

    def test_s4_it_is_stopped(self):
        process, port = self.python("s = listen(); os.kill(os.getpid(), signal.SIGSTOP)")
        eventually(lambda: Path(f"/proc/{process.pid}/stat").read_text().rsplit(")")[1].split()[0] == "T", "the stop")
        self.assertEqual(self.stop(port).returncode, 0)
        self.assertLess(process.wait(5), 0)

    def test_s4_it_is_a_zombie(self):
        process, port = self.python("child = os.fork()\n"
                                    "if child == 0: s = listen(); time.sleep(1000)\n"
                                    "signal.pause()")
        self.assertEqual(self.stop(port).returncode, 0, "its parent does not collect it")
        self.assertIsNone(process.poll())

    def test_s5_it_is_started_again(self):
        process, port = self.python("port = 0\n"
                                    "while True:\n"
                                    "    child = os.fork()\n"
                                    "    if child == 0: s = listen(port); time.sleep(1000)\n"
                                    "    port = 0\n"
                                    "    os.waitpid(child, 0)\n")
        before = {service["pid"] for service in self.listed("--no-probe")}
        self.assertEqual(self.stop(port).returncode, 0)
        again = eventually(lambda: self.listed("--no-probe"), "the next one")
        self.assertEqual(len(again), 1)
        self.assertNotIn(again[0]["pid"], before)
        time.sleep(2)
        self.assertEqual({service["pid"] for service in self.listed("--no-probe")}, {again[0]["pid"]}, "it is left alone")

    def test_s7_two_stops_at_once(self):
        process, port = self.python("count = 0\n"
                                    "def told(*_):\n"
                                    "    global count; count += 1\n"
                                    "signal.signal(15, told); s = listen()\n"
                                    "while not count: time.sleep(0.05)\n"
                                    "time.sleep(0.5)\n")
        runs = [subprocess.Popen([PORTOLANCTL, "stop", str(port)], stdout=subprocess.PIPE, stderr=subprocess.PIPE) for _ in range(2)]
        outcomes = [run.wait(20) for run in runs]
        for run in runs:
            run.communicate()
        self.assertIn(0, outcomes)
        self.assertEqual(process.wait(5), 0)

    def test_s7_the_program_ends_while_it_stops_one(self):
        process, port = self.python("signal.signal(15, signal.SIG_IGN); s = listen(); time.sleep(1000)")
        run = subprocess.Popen([PORTOLANCTL, "stop", str(port)], stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        time.sleep(0.7)
        run.send_signal(signal.SIGINT)
        run.communicate(timeout=10)
        self.assertIn(run.returncode, (-signal.SIGINT, 0, 1))

    def test_a_server_beside_it_is_left_alone(self):
        other, _ = self.start_servers(1, ANSWER)
        process, port = self.python("s = listen(); time.sleep(1000)")
        self.assertEqual(self.stop(port).returncode, 0)
        self.assertEqual(process.wait(5), -signal.SIGTERM)
        self.assertIsNone(other.poll())
