# SPDX-License-Identifier: MIT
"""Fixtures of the fault suite besides a desktop: servers with many ports, a file system that hangs, portolanctl."""

import ctypes
import json
import os
import resource
import selectors
import socket
import struct
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

HERE = Path(__file__).resolve().parent
sys.path.append(str(HERE.parent / "desktop"))

from session import eventually  # noqa: E402, F401  (used by the tests)

PORTOLANCTL = os.environ.get("PORTOLANCTL", str(HERE.parents[1] / "build/dev/bin/portolanctl"))
MS_NOSUID, MS_NODEV, MS_BIND = 2, 4, 4096
ANSWER = b"HTTP/1.1 200 OK\r\nContent-Length: 0\r\n\r\n"


def serve(ports, answer, chunk, folder):
    """The main function of a server process: listens on `ports` ports and prints them, in `folder`. Sends `answer` to each request,
    then `chunk` without end; if both are empty it accepts and stays silent."""
    os.chdir(folder)
    _, hard = resource.getrlimit(resource.RLIMIT_NOFILE)
    resource.setrlimit(resource.RLIMIT_NOFILE, (hard, hard))
    watch = selectors.DefaultSelector()
    numbers = []
    for _ in range(ports):
        listener = socket.create_server(("127.0.0.1", 0), backlog=64)
        listener.setblocking(False)
        watch.register(listener, selectors.EVENT_READ)
        numbers.append(listener.getsockname()[1])
    print(*numbers, flush=True)

    def step(key):
        if key.fileobj.getsockopt(socket.SOL_SOCKET, socket.SO_ACCEPTCONN):
            connection, _ = key.fileobj.accept()
            connection.setblocking(False)
            watch.register(connection, selectors.EVENT_READ)
        elif key.data is not None:
            key.fileobj.send(chunk)
        elif not key.fileobj.recv(65536):
            raise ConnectionError
        elif answer:
            key.fileobj.send(answer)
            if chunk:
                watch.modify(key.fileobj, selectors.EVENT_WRITE, True)

    while True:
        for key, _ in watch.select():
            try:
                step(key)
            except BlockingIOError:
                pass
            except OSError:
                watch.unregister(key.fileobj)
                key.fileobj.close()


class HungMount:
    """A FUSE file system that accepts every request and never answers, like a dead network mount. Its root can be entered."""

    def __init__(self, folder):
        self._folder = folder
        device = os.open("/dev/fuse", os.O_RDWR)
        options = f"fd={device},rootmode=40000,user_id={os.getuid()},group_id={os.getgid()},allow_other"
        mount("hung", folder, "fuse", options)
        # A process of its own: one that waits for the file system must not keep it from accepting requests.
        self._server = subprocess.Popen([sys.executable, "-B", "-c", f"import faults; faults.take_questions({device})"],
                                        env=os.environ | {"PYTHONPATH": str(HERE)}, pass_fds=[device], stdout=subprocess.PIPE)
        os.close(device)

    def await_question(self):
        """Waits until a request has been accepted."""
        return self._server.stdout.readline()

    def release(self):
        """Makes all requests that wait for the file system fail."""
        self._server.kill()
        self._server.wait()
        self._server.stdout.close()
        subprocess.run(["umount", "--lazy", self._folder], check=True)


def take_questions(device):
    """The main function of the server of a HungMount; prints a line for each request."""
    INIT, ACCESS, ENOSYS, PARALLEL_LOOKUPS = 26, 34, 38, 1 << 18
    while True:
        question = os.read(device, 1 << 20)
        _, operation, unique = struct.unpack_from("<IIQ", question)
        if operation == INIT:
            body = struct.pack("<IIIIHHIIHHI28x", 7, 31, 0, PARALLEL_LOOKUPS, 0, 0, 4096, 1, 0, 0, 0)
            os.write(device, struct.pack("<IiQ", 16 + len(body), 0, unique) + body)
        elif operation == ACCESS:
            os.write(device, struct.pack("<IiQ", 16, -ENOSYS, unique))
        else:
            print(operation, flush=True)


def mount(what, where, kind, options, flags=MS_NOSUID | MS_NODEV):
    libc = ctypes.CDLL(None, use_errno=True)
    if libc.mount(what.encode(), str(where).encode(), kind.encode(), flags, options.encode()) != 0:
        raise unittest.SkipTest(f"mounting is not permitted here: {os.strerror(ctypes.get_errno())}")


class Fault(unittest.TestCase):
    """A test with servers of its own and a folder outside of any home folder."""

    def setUp(self):
        folder = tempfile.TemporaryDirectory(prefix="portolan-faults-")
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)

    def start_servers(self, ports, answer=b"", chunk=b"", folder=None):
        """Starts a process that listens on this many ports; returns both."""
        # It enters the folder once it has loaded everything that it needs, as nothing can be read on a dead mount.
        code = f"import faults; faults.serve({ports}, {answer!r}, {chunk!r}, {str(folder or self.folder)!r})"
        process = subprocess.Popen([sys.executable, "-B", "-c", code], stdout=subprocess.PIPE,
                                   env=os.environ | {"PYTHONPATH": str(HERE)})
        self.addCleanup(process.stdout.close)
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process, [int(port) for port in process.stdout.readline().split()]

    def portolanctl(self, *arguments, timeout=60, limits=None, **options):
        """Runs portolanctl to its end. `limits`: soft and hard resource limits of the program."""
        def prepare():
            for which, pair in (limits or {}).items():
                resource.setrlimit(which, pair)
        environment = os.environ | {"XDG_CONFIG_HOME": str(self.folder / "config")} | options.pop("env", {})
        return subprocess.run([PORTOLANCTL, *arguments], capture_output=True, timeout=timeout, preexec_fn=prepare,
                              env=environment, check=False, **options)

    def listed(self, *arguments, **options):
        """The services that `portolanctl list --json` prints."""
        run = self.portolanctl("list", "--json", *arguments, **options)
        self.assertEqual((run.returncode, run.stderr), (0, b""))
        return json.loads(run.stdout)

    def health_by_port(self, services):
        return {service["port"]: (service["health"]["state"], service["health"].get("status")) for service in services}
