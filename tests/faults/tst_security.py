# SPDX-License-Identifier: MIT
"""The sentences of docs/security.md, held against the system calls of the real programs."""

import os
import re
import stat
import subprocess
import time
from pathlib import Path

from driver import PORTOLAN, Scenario, eventually
from faults import ANSWER, PORTOLANCTL, Fault

OPENS = "open,openat,openat2,creat,mkdir,mkdirat,rename,renameat,renameat2,link,linkat,symlink,symlinkat,unlink,unlinkat"


def calls_of(log, *names):
    """The successful calls of these names, as text."""
    pattern = re.compile(rf"^\d+ +(?:{'|'.join(names)})\(.* = (?!-1)")
    return [line for line in log.read_text(errors="replace").splitlines() if pattern.match(line)]


class Security(Fault):
    def trace(self, calls, *command):
        """Runs a program to its end and returns the system calls of it and its children."""
        log = self.folder / "trace"
        run = subprocess.run(["strace", "-f", "-qq", "-s", "300", "-o", log, "-e", f"trace={calls}", *command],
                             capture_output=True, timeout=60, check=False, cwd="/",
                             env=os.environ | {"XDG_CONFIG_HOME": str(self.folder / "config")})
        self.assertEqual(run.returncode, 0, run.stderr)
        return log

    def setUp(self):
        super().setUp()
        self.project = self.folder / "storefront"
        self.project.mkdir()
        (self.project / "package.json").write_text("{}")
        (self.project / "secret").write_text("x")
        _, (self.port,) = self.start_servers(1, ANSWER, folder=self.project)

    def test_the_list_runs_nothing(self):
        log = self.trace("execve,execveat", PORTOLANCTL, "list")
        self.assertEqual(len(calls_of(log, "execve", "execveat")), 1, "its own start")

    def test_the_list_writes_nothing(self):
        log = self.trace(OPENS, PORTOLANCTL, "list")
        writing = [call for call in calls_of(log, *OPENS.split(","))
                   if not re.search(r"open(at2?)?\(", call) or re.search(r"O_WRONLY|O_RDWR|O_CREAT", call)]
        self.assertEqual([call for call in writing if "/dev/null" not in call], [])
        self.assertFalse((self.folder / "config").exists())

    def test_only_a_child_without_descriptors_looks_into_folders(self):
        log = self.trace("open,openat,stat,newfstatat,statx,readlink,readlinkat,access,faccessat2,fork,vfork,clone,clone3",
                         PORTOLANCTL, "list")
        text = log.read_text()
        program = text.split(None, 1)[0]
        inside = [line for line in text.splitlines() if f'"{self.project}/' in line]
        self.assertNotEqual(inside, [])
        self.assertEqual([line for line in inside if line.startswith(program + " ")], [])
        self.assertEqual({line.split()[0] for line in inside if "secret" in line}, set())
        self.assertEqual(len({line.split()[0] for line in inside}), 1, "one process")

    def test_requests_go_to_the_loopback_address_alone(self):
        log = self.trace("connect,sendto,sendmsg,bind,listen", PORTOLANCTL, "list")
        addresses = set(re.findall(r"connect\(\d+, \{sa_family=AF_INET6?, [^}]*\}", log.read_text()))
        self.assertTrue(addresses)
        for address in addresses:
            self.assertIn('inet_addr("127.0.0.1")', address)
        self.assertEqual([call for call in calls_of(log, "listen")], [])
        sent = [call for call in calls_of(log, "sendto") if "HTTP/1.1" in call]
        self.assertEqual(len(sent), 1)
        self.assertIn(f'"HEAD / HTTP/1.1\\r\\nHost: 127.0.0.1:{self.port}\\r\\nUser-Agent: Portolan\\r\\nAccept: */*\\r\\n\\r\\n"',
                      sent[0])


class Files(Scenario):
    """What the desktop program writes, and for whom."""

    def written(self):
        """The files and folders under the session's home and runtime folders that are the program's, with their modes."""
        found = {}
        for root in (self.desktop.home, self.desktop.folder / "run"):
            for path in root.rglob("*"):
                if "portolan" in str(path.relative_to(root)):
                    found[str(path.relative_to(root))] = stat.S_IMODE(path.lstat().st_mode)
        return found

    def check_modes(self, expected):
        os.umask(0)
        d = self.desktop
        d.start("--background")
        time.sleep(2)
        d.program.terminate()
        d.program.wait(30)
        for path, mode in self.written().items():
            is_folder = (d.home / path).is_dir() or (d.folder / "run" / path).is_dir()
            self.assertEqual(oct(mode), oct(0o700 if is_folder else 0o600), path)
        for path in expected:
            self.assertIn(path, self.written())

    def test_are_the_users_alone(self):
        self.check_modes(["portolan/icons/hicolor"])

    def test_nothing_is_run_by_itself(self):
        d = self.desktop
        log = d.folder / "trace"
        d.program = d.spawn("strace", "-f", "-qq", "-o", str(log), "-e", "trace=execve,execveat,listen", PORTOLAN,
                            "--background")
        time.sleep(4)
        child = int(Path(f"/proc/{d.program.pid}/task/{d.program.pid}/children").read_text().split()[0])
        os.kill(child, 15)
        self.assertEqual(d.program.wait(30), 0)
        self.assertEqual(len(calls_of(log, "execve", "execveat")), 1, "its own start")
        self.assertEqual(calls_of(log, "listen"), [])


class FilesWithoutBus(Scenario):
    parts = {"bus": False, "manager": False, "panel": False}

    def test_are_the_users_alone(self):
        d = self.desktop
        d.start("--background")
        lock = d.folder / "run/portolan.lock"
        socket = d.folder / "run/portolan.socket"
        eventually(socket.exists, "the socket")
        self.assertEqual(stat.S_IMODE(lock.stat().st_mode), 0o600)
        self.assertEqual(stat.S_IMODE(socket.stat().st_mode) & 0o077, 0)
