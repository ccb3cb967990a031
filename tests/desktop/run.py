# SPDX-License-Identifier: MIT
"""Runs tests, named as for unittest, in a network namespace of their own if the system permits that, so that the program
finds only the servers of the test."""

import os
import subprocess
import sys
import unittest

ISOLATED = ["unshare", "--user", "--map-root-user", "--net"]
INSIDE = "PORTOLAN_DESKTOP_TEST_ISOLATED"


def can_be_isolated():
    return subprocess.run([*ISOLATED, "ip", "link", "set", "lo", "up"], stderr=subprocess.DEVNULL).returncode == 0


if INSIDE not in os.environ:
    os.environ[INSIDE] = "1"
    if can_be_isolated():
        os.execvp(ISOLATED[0], [*ISOLATED, "sh", "-c", 'ip link set lo up && exec "$@"', "sh", sys.executable, *sys.argv])

unittest.main(module=None)
