# SPDX-License-Identifier: MIT
"""One scan, by both process sources, compared with the system's own tools."""

import os
import time

import meter
import report
from population import BACKGROUNDS, population

SS = ["ss", "-ltnp"]
LSOF = ["lsof", "-nP", "-iTCP", "-sTCP:LISTEN"]
EXTERNAL = dict(os.environ, PORTOLAN_TOOLS="external")
STEADY_ROUNDS = 31
FRESH_PROCESSES = 15
WAITING_PROCESSES = 7
# A scan comes every 5 seconds, and every 30 seconds one is a full rescan.
SCANS_PER_FULL_RESCAN = 6
FULL_RESCAN_SECONDS = 31


def first_costs(programs, servers):
    """The cost of the first scan of each program in a fresh process; alternating, so that all run under the same load."""
    turns = [[meter.reported([program, "0"], servers)["first"] for program in programs]
             for _ in range(FRESH_PROCESSES)]
    return [meter.middle(costs) for costs in zip(*turns)]


def full_rescan_cost(program, servers):
    """The cost of a full rescan, in processes that have waited until one is due."""
    waiting = []
    for _ in range(WAITING_PROCESSES):
        waiting.append(meter.started([program, "1", str(FULL_RESCAN_SECONDS)]))
        time.sleep(0.2)  # apart, so that the rescans are too
    return meter.middle([meter.said(process, servers)["later"] for process in waiting])


def measure(paths, background, servers, steady_bar):
    report.heading(f"scan: {servers} servers, {background}")
    programs = paths.programs / "proc_baseline", paths.programs / "scan_cost"
    cold_baseline, first = first_costs(programs, servers)
    baseline = meter.reported([paths.programs / "proc_baseline", "15"], servers)["baseline"]
    ss = meter.median(SS, 9)
    lsof = meter.median(LSOF, 5)
    steady = meter.reported([paths.programs / "scan_cost", str(STEADY_ROUNDS)], servers)["steady"]
    rescan = full_rescan_cost(paths.programs / "scan_cost", servers)
    average = meter.average([steady] * (SCANS_PER_FULL_RESCAN - 1) + [rescan])
    external = meter.reported([paths.programs / "scan_cost", "1"], servers, EXTERNAL)["steady"]

    limits = {"baseline": baseline, "ss": ss}
    report.row("cold baseline", cold_baseline)
    report.row("baseline", baseline)
    report.row("ss -ltnp", ss)
    report.row("lsof -nP -iTCP -sTCP:LISTEN", lsof)
    report.row("first scan", first, {"cold baseline": cold_baseline, **limits}, ("cold baseline", 1.5))
    report.row("steady scan, between full rescans", steady, limits)
    report.row("full rescan", rescan, limits)
    report.row("steady scan, on average", average, limits, steady_bar)
    tools = meter.Cost(0, external.children)
    report.row("scan by the tool source", external, {"the tools": tools, **limits}, ("the tools", 1.1))
    print(f"a server of a steady scan: {average.cpu / servers * 1e3:.0f} us", flush=True)


def main(paths):
    for background in BACKGROUNDS:
        for servers in (5, 25, 100, 300):
            ratio = 0.5 if background == "idle" else 0.1
            bar = ("ss", ratio) if servers == 25 else None
            with population(paths.programs, background, servers, paths.scratch):
                measure(paths, background, servers, bar)
