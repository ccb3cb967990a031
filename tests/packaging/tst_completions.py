# SPDX-License-Identifier: MIT
"""What bash, zsh and fish offer on Tab, asked of real shells in a terminal, with real servers running."""

import fcntl
import os
import pty
import re
import select
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import termios
import time
import unittest
from pathlib import Path

COMPLETIONS = Path(__file__).resolve().parents[2] / "packaging/completions"
BIN = os.environ["PORTOLAN_BIN"]
LIMIT = 60  # seconds
PROMPT = "ready> "

START = {
    "bash": (["bash", "--norc", "--noprofile", "-i"],
             "bind 'set show-all-if-ambiguous on'; bind 'set bell-style none'; bind 'set page-completions off'; "
             f"bind 'set enable-bracketed-paste off'; for f in {COMPLETIONS}/bash/*; do . $f; done; PS1='{PROMPT}'"),
    "zsh": (["zsh", "-f", "-i"],
            f"fpath=({COMPLETIONS}/zsh $fpath); autoload -U compinit && compinit -u; unsetopt beep; "
            f"LISTMAX=1000; PS1='{PROMPT}'"),
    "fish": (["fish", "--no-config"],
             f"for f in {COMPLETIONS}/fish/*.fish; source $f; end; set -g fish_autosuggestion_enabled 0; "
             f"function fish_prompt; printf '{PROMPT}'; end"),
}


class Shell:
    """An interactive shell in a terminal of its own."""

    def __init__(self, name, home):
        command, setup = START[name]
        environment = {"PATH": f"{BIN}:{os.environ['PATH']}", "HOME": str(home), "TERM": "xterm", "LC_ALL": "C.UTF-8"}
        self.pid, self.terminal = pty.fork()
        if self.pid == 0:
            os.chdir(home)
            os.execvpe(command[0], command, environment)
        fcntl.ioctl(self.terminal, termios.TIOCSWINSZ, struct.pack("HHHH", 100, 200, 0, 0))
        self.type(setup + "; printf 'set %s\\n' up\n")
        self.read_until(f"set up[^$]*{PROMPT}")

    def type(self, text):
        os.write(self.terminal, text.encode())

    def read_until(self, *patterns):
        shown = ""
        end = time.monotonic() + LIMIT
        while missing := [pattern for pattern in patterns if not re.search(pattern, shown)]:
            if not select.select([self.terminal], [], [], max(0, end - time.monotonic()))[0]:
                raise AssertionError(f"no {missing} in {shown!r}")
            shown += os.read(self.terminal, 65536).decode(errors="replace")

    def close(self):
        os.kill(self.pid, signal.SIGKILL)
        os.waitpid(self.pid, 0)
        os.close(self.terminal)


class Completions(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp(prefix="portolan-completions-"))
        self.addCleanup(shutil.rmtree, self.folder)
        self.servers = {name: self.serve(name) for name in ("Web Shop", "$(touch found)")}

    def serve(self, name):
        (self.folder / name).mkdir()
        server = subprocess.Popen([sys.executable, "-u", "-m", "http.server", "0", "--bind", "127.0.0.1"],
                                  cwd=self.folder / name, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL)
        self.addCleanup(server.stdout.close)
        self.addCleanup(server.wait)
        self.addCleanup(server.kill)
        return re.search(rb"port (\d+)", server.stdout.readline())[1].decode()

    def offered(self, shell, line, expected):
        """Types `line` and Tab, and waits for all that is `expected` to be shown."""
        terminal = Shell(shell, self.folder)
        try:
            terminal.type(line + "\t\t")
            terminal.read_until(*map(re.escape, expected))
        finally:
            terminal.close()

    def check(self, shell):
        if not shutil.which(shell):
            self.skipTest(f"{shell} is not installed")
        port, hostile = self.servers.values()
        for line, expected in {
            "portolan --": ["--background", "--window", "--version", "--help"],
            "portolanctl ": ["list", "watch", "stop", "open", "wait"],
            "portolanctl watch --sort ": ["name", "status", "uptime"],
            "portolanctl open ": [port, hostile],
            "portolanctl stop ": [port, hostile, "touch"],
            # What is completed on the line is one argument for the shell.
            "portolanctl list We": [r"Web\ Shop"],
        }.items():
            with self.subTest(line):
                self.offered(shell, line, expected)
        self.assertEqual(list(self.folder.glob("**/found")), [], "a server's name was run as a command")

    def test_bash(self):
        self.check("bash")

    def test_zsh(self):
        self.check("zsh")

    def test_fish(self):
        self.check("fish")

    def test_every_option_is_offered(self):
        commands = [["portolan"], ["portolanctl"], *(["portolanctl", command] for command in ("list", "watch", "stop", "open", "wait"))]
        for command in commands:
            help = subprocess.run([f"{BIN}/{command[0]}", *command[1:], "--help"], capture_output=True, text=True).stdout
            for file in COMPLETIONS.glob("*/*"):
                if file.stem.lstrip("_") != command[0]:
                    continue
                words = re.findall(r"[a-z-]+", file.read_text())
                for option in re.findall(r"--([a-z-]+)", help):
                    with self.subTest(file=file.name, option=option):
                        self.assertTrue(option in words or f"--{option}" in words)
