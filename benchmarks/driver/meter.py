# SPDX-License-Identifier: MIT
"""The cost of programs."""

import dataclasses
import os
import statistics
import subprocess
import time


@dataclasses.dataclass
class Cost:
    """In milliseconds; `children` is the CPU of the processes that the measured one started."""

    wall: float
    cpu: float
    children: float = 0.0

    @property
    def total(self):
        return self.cpu + self.children


def run(command, environment=None):
    """One run of a whole program, its children included."""
    start = time.perf_counter()
    process = subprocess.Popen(command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL, env=environment)
    _, _, usage = os.wait4(process.pid, 0)
    process.returncode = 0  # reaped above
    wall = time.perf_counter() - start
    return Cost(wall * 1e3, (usage.ru_utime + usage.ru_stime) * 1e3)


def middle(costs):
    """The median of each figure on its own."""
    figures = zip(*map(dataclasses.astuple, costs))
    return Cost(*map(statistics.median, figures))


def average(costs):
    """The mean of each figure on its own."""
    figures = zip(*map(dataclasses.astuple, costs))
    return Cost(*map(statistics.fmean, figures))


def median(command, rounds, environment=None):
    return middle([run(command, environment) for _ in range(rounds)])


def started(command, environment=None):
    """Starts a program of this project that reports its own cost."""
    return subprocess.Popen(command, stdout=subprocess.PIPE, text=True, env=environment)


def said(process, expected):
    """The output of a started program: costs by name. It must have found `expected` servers."""
    output, _ = process.communicate()
    if process.returncode != 0:
        raise RuntimeError(f"{process.args} failed")
    costs = {}
    for line in output.splitlines():
        name, *figures = line.split()
        if name == "found" and int(figures[0]) != expected:
            raise RuntimeError(f"{process.args} found {figures[0]} servers of {expected}")
        if name != "found":
            costs[name] = Cost(*map(float, figures))
    return costs


def reported(command, expected, environment=None):
    """The cost that a program of this project reports about itself."""
    return said(started(command, environment), expected)
