# SPDX-License-Identifier: MIT
"""Checks the statements of docs/security.md by the system calls of the real programs."""

import os
import pwd
import re
import signal
import stat
import subprocess
from pathlib import Path

from driver import PORTOLAN, Scenario, eventually
from faults import ANSWER, PORTOLANCTL, Fault

WRITING = "open,openat,openat2,creat,mkdir,mkdirat,rename,renameat,renameat2,link,linkat,symlink,symlinkat,unlink,unlinkat"


def calls_of(log, *names):
    """The successful calls of these names, as text."""
    pattern = re.compile(rf"^\d+ +(?:{'|'.join(names)})\(.* = (?!-1)")
    return [line for line in log.read_text(errors="replace").splitlines() if pattern.match(line)]


def writing(log):
    """The calls that created, changed or removed something in a file system."""
    return [call for call in calls_of(log, *WRITING.split(","))
            if "/dev/null" not in call and
            (not re.search(r"open(at2?)?\(", call) or re.search(r"O_WRONLY|O_RDWR|O_CREAT", call))]


def hosts(log):
    """The internet addresses that the program connected to, or tried to."""
    return set(re.findall(r'sa_family=AF_INET6?, .*?inet_(?:addr\(|pton\(AF_INET6, )"(.*?)"', log.read_text()))


class Security(Fault):
    def trace(self, calls, *command, **env):
        """Runs a program to its end and returns the system calls of it and its children."""
        log = self.folder / "trace"
        run = subprocess.run(["strace", "-f", "-qq", "-s", "300", "-o", log, "-e", f"trace={calls}", *command],
                             capture_output=True, timeout=60, check=False, cwd="/",
                             env=os.environ | {"XDG_CONFIG_HOME": str(self.folder / "config")} | env)
        self.assertEqual(run.returncode, 0, run.stderr)
        return log

    def setUp(self):
        super().setUp()
        self.project = self.folder / "storefront"
        self.project.mkdir()
        (self.project / "package.json").write_text("{}")
        (self.project / "secret").write_text("x")
        self.server, (self.port,) = self.start_servers(1, ANSWER, folder=self.project)

    def test_the_list_runs_nothing(self):
        log = self.trace("execve,execveat", PORTOLANCTL, "list")
        self.assertEqual(len(calls_of(log, "execve", "execveat")), 1, "its own start")

    def test_the_tools_are_run_by_absolute_path(self):
        log = self.trace("execve,execveat", PORTOLANCTL, "list", PORTOLAN_TOOLS="external")
        run = re.findall(r'execve\("(.*?)"', log.read_text())[1:]
        self.assertTrue(any("lsof" in program for program in run))
        self.assertEqual(set(run) - {"/usr/sbin/lsof", "/usr/bin/lsof", "/bin/ps", "/usr/bin/ps"}, set())

    def test_the_list_writes_nothing(self):
        self.assertEqual(writing(self.trace(WRITING, PORTOLANCTL, "list")), [])
        self.assertFalse((self.folder / "config").exists())

    def test_the_list_reads_nothing_else(self):
        calls = self.trace("%file", PORTOLANCTL, "list").read_text().splitlines()
        calls = [(int(call.split()[0]), path) for call in calls if " execve(" not in call
                 for path in re.findall(r'\((?:[^"(]*, )?"(/.*?)"', call)]
        inside = {process for process, path in calls if Path(path).is_relative_to(self.project)}
        self.assertEqual(len(inside), 1, "one process looks into the folder")
        self.assertNotIn(calls[0][0], inside, "which is not the program")
        home = Path(pwd.getpwuid(os.getuid()).pw_dir)
        for process, path in calls:
            with self.subTest(path):
                if process in inside and Path(path).is_relative_to(self.project):
                    self.assertNotIn("secret", path)
                elif found := re.match(r"/proc/\d+/([^/]+)(.*)", path):
                    self.assertIn(found[1], ("stat", "statm", "exe", "cwd", "fd"))
                    self.assertRegex(found[2], r"^(/\d+)?$")
                elif not (home / "x").is_relative_to(path):  # whether its name is a link
                    self.assertRegex(path, rf"^/(proc|usr|lib|lib64|etc|dev|sys|run|var/run|selinux)(/|$)|^{self.folder}/config/")

    def test_the_process_that_reads_folders_has_one_descriptor(self):
        program = subprocess.Popen([PORTOLANCTL, "watch", "--json"], stdout=subprocess.PIPE,
                                   env=os.environ | {"XDG_CONFIG_HOME": str(self.folder / "config")})
        self.addCleanup(program.stdout.close)
        self.addCleanup(program.wait)
        self.addCleanup(program.terminate)
        program.stdout.readline()
        children = [child for file in Path(f"/proc/{program.pid}/task").glob("*/children") for child in file.read_text().split()]
        self.assertEqual(len(children), 1)
        descriptors = [os.readlink(link) for link in Path(f"/proc/{children[0]}/fd").iterdir()]
        self.assertEqual(len(descriptors), 1)
        self.assertTrue(descriptors[0].startswith("socket:"))

    def test_requests_go_to_the_loopback_address_alone(self):
        log = self.trace("connect,sendto,sendmsg,bind,listen", PORTOLANCTL, "list")
        self.assertEqual(hosts(log), {"127.0.0.1"})
        self.assertEqual(calls_of(log, "listen"), [])
        sent = [call for call in calls_of(log, "sendto") if "HTTP/1.1" in call]
        self.assertEqual(len(sent), 1)
        self.assertIn(f'"HEAD / HTTP/1.1\\r\\nHost: 127.0.0.1:{self.port}\\r\\nUser-Agent: Portolan\\r\\nAccept: */*\\r\\n\\r\\n"',
                      sent[0])

    def test_signals_go_to_the_stopped_server_alone(self):
        log = self.trace("kill,tkill,tgkill,rt_sigqueueinfo,rt_tgsigqueueinfo,pidfd_open,pidfd_send_signal",
                         PORTOLANCTL, "stop", str(self.port))
        text = log.read_text()
        self.assertEqual(self.server.wait(5), -signal.SIGTERM)
        self.assertEqual(re.findall(r"pidfd_send_signal\(\d+, (SIG\w+)", text), ["SIGTERM"])
        # By pid it only kills its own child, which no other process can reap.
        children = set(re.findall(r"^(\d+) ", text, re.M)) | set(re.findall(r"si_pid=(\d+)", text))
        by_number = re.findall(r"(?:kill|queueinfo)\(-?(\d+),", text)
        self.assertEqual(set(by_number) - children, set())
        self.assertNotIn(str(self.server.pid), by_number)

    def test_another_machine_is_sent_fixed_words(self):
        ssh = self.folder / "bin/ssh"
        ssh.parent.mkdir()
        ssh.write_text(f"#!/bin/sh\nprintf '%s\\n' \"$@\" >{self.folder}/arguments\necho '[]'\n")
        ssh.chmod(0o755)
        run = self.portolanctl("list", "--host", "box", "--search", "$(touch found); x",
                               env={"PATH": f"{ssh.parent}:{os.environ['PATH']}"})
        self.assertEqual(run.returncode, 0, run.stderr)
        arguments = (self.folder / "arguments").read_text().splitlines()
        for option in ("-a", "-x", "BatchMode=yes", "ClearAllForwardings=yes"):
            self.assertIn(option, arguments)
        self.assertEqual(arguments[-3:], ["--", "box", "portolanctl list --json"])


class Files(Scenario, Fault):
    """What the desktop program does by itself, and the permissions of the files that it writes."""

    def setUp(self):
        Fault.setUp(self)
        Scenario.setUp(self)

    def written(self):
        """The files and folders under the session's home and runtime folders that are the program's, with their modes."""
        found = {}
        for root in (self.desktop.home, self.desktop.folder / "run"):
            for path in root.rglob("*"):
                if "portolan" in str(path.relative_to(root)):
                    found[str(path.relative_to(root))] = path.lstat().st_mode
        return found

    def test_are_the_users_alone(self):
        os.umask(0)
        d = self.desktop
        d.start("--background")
        d.shown_icon()
        d.program.terminate()
        d.program.wait(30)
        written = self.written()
        self.assertIn("portolan/icons/hicolor", written)
        for path, mode in written.items():
            self.assertEqual(oct(stat.S_IMODE(mode)), oct(0o700 if stat.S_ISDIR(mode) else 0o600), path)

    def test_nothing_else_is_done_by_itself(self):
        d = self.desktop
        settings = d.home / "config/portolan/settings.json"
        settings.parent.mkdir(parents=True)
        settings.write_text('{"autoRefresh": true}')
        _, (port,) = self.start_servers(1, ANSWER)
        log = d.folder / "trace"
        d.program = d.spawn("strace", "-f", "-qq", "-s", "300", "-o", str(log), "-e", f"trace=execve,execveat,listen,connect,{WRITING}",
                            PORTOLAN, "--background")
        eventually(lambda: log.exists() and f"htons({port})" in log.read_text(), "a probe")
        child = int(Path(f"/proc/{d.program.pid}/task/{d.program.pid}/children").read_text().split()[0])
        os.kill(child, signal.SIGTERM)
        self.assertEqual(d.program.wait(30), 0)
        self.assertEqual(len(calls_of(log, "execve", "execveat")), 1, "its own start")
        self.assertEqual(calls_of(log, "listen"), [])
        self.assertEqual(hosts(log), {"127.0.0.1"})
        self.assertEqual([call for call in writing(log) if f"{d.folder}/run/portolan/icons" not in call and
                          f'mkdir("{d.folder}/run/portolan"' not in call], [])


class FilesWithoutBus(Scenario):
    parts = {"bus": False, "manager": False, "panel": False}

    def test_are_the_users_alone(self):
        d = self.desktop
        d.start("--background")
        lock = d.folder / "run/portolan.lock"
        socket = d.folder / "run/portolan.socket"
        eventually(socket.exists, "the socket")
        status = Path(f"/proc/{d.program.pid}/status")
        eventually(lambda: int(re.search(r"SigCgt:\s*(\w+)", status.read_text())[1], 16) >> signal.SIGTERM - 1 & 1,
                   "the program to be one that ends in order")
        self.assertEqual(stat.S_IMODE(lock.stat().st_mode), 0o600)
        self.assertEqual(stat.S_IMODE(socket.stat().st_mode) & 0o077, 0)
