# SPDX-License-Identifier: MIT
"""Runs tests, named as for unittest, in a network namespace of their own if the system permits that, so that the program
finds only the servers of the test; with a folder of their own for the sockets of X servers, since Xwayland is started only
where that belongs to its user."""

import os
import subprocess
import sys

from session import run_tests

ISOLATED = ["unshare", "--user", "--map-root-user", "--net", "--mount"]
PREPARE = "ip link set lo up && mkdir -p /tmp/.X11-unix && mount -t tmpfs -o mode=1777 tmpfs /tmp/.X11-unix"
INSIDE = "PORTOLAN_DESKTOP_TEST_ISOLATED"


def can_be_isolated():
    return subprocess.run([*ISOLATED, "sh", "-c", PREPARE], stderr=subprocess.DEVNULL).returncode == 0


if INSIDE not in os.environ:
    os.environ[INSIDE] = "1"
    if can_be_isolated():
        os.execvp(ISOLATED[0], [*ISOLATED, "sh", "-c", f'{PREPARE} && exec "$@"', "sh", sys.executable, *sys.argv])

run_tests()
