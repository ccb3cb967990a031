# SPDX-License-Identifier: MIT
"""Runs tests, named as for unittest, in namespaces of their own, so that the programs find only the processes, servers and
mounts of the test."""

import os
import subprocess
import sys
from pathlib import Path

NAMESPACES = ["unshare", "--user", "--map-root-user", "--net", "--mount", "--pid", "--fork", "--kill-child", "--mount-proc"]
INSIDE = "PORTOLAN_FAULT_INSIDE"

if INSIDE not in os.environ:
    os.environ[INSIDE] = "1"
    if os.geteuid() == 0:
        NAMESPACES[1:3] = []
    if subprocess.run([*NAMESPACES, "true"], stderr=subprocess.DEVNULL).returncode != 0:
        print(": Skipped\nnamespaces are not permitted here")
        sys.exit(77)
    os.execvp(NAMESPACES[0], [*NAMESPACES, "sh", "-c", 'ip link set lo up && "$@"', "sh", sys.executable, "-B", *sys.argv])

sys.path.append(str(Path(__file__).resolve().parent.parent / "desktop"))
from session import run_tests  # noqa: E402

run_tests()
