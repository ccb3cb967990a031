"""One scan, by both process sources, beside what the system's own tools take for the same question."""

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
# A scan comes every 5 seconds, and every 30 seconds one looks everywhere.
SCANS_A_LOOK = 6
LOOK_SECONDS = 31


def first_costs(programs, servers):
    """What each program takes for its first look in a fresh process; by turns, so that all meet the same machine."""
    turns = [[meter.reported([program, "0"], servers)["first"] for program in programs]
             for _ in range(FRESH_PROCESSES)]
    return [meter.middle(costs) for costs in zip(*turns)]


def look_cost(program, servers):
    """What a scan takes that looks everywhere, in processes that have been waiting for its time to come."""
    waiting = []
    for _ in range(WAITING_PROCESSES):
        waiting.append(meter.started([program, "1", str(LOOK_SECONDS)]))
        time.sleep(0.2)  # apart, so that the looks are too
    return meter.middle([meter.said(process, servers)["later"] for process in waiting])


def measure(paths, background, servers, steady_bar):
    report.heading(f"scan: {servers} servers, {background}")
    programs = paths.programs / "table_walk", paths.programs / "scan_cost"
    first_walk, first = first_costs(programs, servers)
    walk = meter.reported([paths.programs / "table_walk", "15"], servers)["walk"]
    ss = meter.median(SS, 9)
    lsof = meter.median(LSOF, 5)
    steady = meter.reported([paths.programs / "scan_cost", str(STEADY_ROUNDS)], servers)["steady"]
    look = look_cost(paths.programs / "scan_cost", servers)
    average = meter.average([steady] * (SCANS_A_LOOK - 1) + [look])
    external = meter.reported([paths.programs / "scan_cost", "1"], servers, EXTERNAL)["steady"]

    limits = {"table walk": walk, "ss": ss}
    report.row("first table walk of a process", first_walk)
    report.row("table walk", walk)
    report.row("ss -ltnp", ss)
    report.row("lsof -nP -iTCP -sTCP:LISTEN", lsof)
    report.row("first scan", first, {"first walk": first_walk, **limits}, ("first walk", 1.5))
    report.row("steady scan, between looks", steady, limits)
    report.row("steady scan that looks everywhere", look, limits)
    report.row("steady scan, on average", average, limits, steady_bar)
    tools = meter.Cost(0, external.children)
    report.row("scan by the tool source", external, {"the tools": tools, **limits}, ("the tools", 1.1))
    print(f"a server of a steady scan: {average.cpu / servers * 1e3:.0f} us", flush=True)


def main(paths):
    for background in BACKGROUNDS:
        for servers in (5, 25, 100, 300):
            ratio = 0.5 if background == "bare" else 0.1
            bar = ("ss", ratio) if servers == 25 else None
            with population(paths.programs, background, servers, paths.scratch):
                measure(paths, background, servers, bar)
