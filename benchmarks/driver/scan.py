"""One scan, by both roads, beside what the system's own tools take for the same question."""

import os

import meter
import report
from population import BACKGROUNDS, population

SS = ["ss", "-ltnp"]
LSOF = ["lsof", "-nP", "-iTCP", "-sTCP:LISTEN"]
EXTERNAL = dict(os.environ, PORTOLAN_TOOLS="external")
STEADY_ROUNDS = 31
FRESH_PROCESSES = 7


def first_cost(program, servers):
    """What a fresh process takes for its first look."""
    return meter.middle([meter.reported([program, "1"], servers)["first"] for _ in range(FRESH_PROCESSES)])


def measure(paths, background, servers, steady_bar):
    report.heading(f"scan: {servers} servers, {background}")
    first_walk = first_cost(paths.programs / "table_walk", servers)
    walk = meter.reported([paths.programs / "table_walk", "15"], servers)["walk"]
    ss = meter.median(SS, 9)
    lsof = meter.median(LSOF, 5)
    first = first_cost(paths.programs / "scan_cost", servers)
    steady = meter.reported([paths.programs / "scan_cost", str(STEADY_ROUNDS)], servers)["steady"]
    external = meter.reported([paths.programs / "scan_cost", "1"], servers, EXTERNAL)["steady"]

    limits = {"table walk": walk, "ss": ss}
    report.row("first table walk of a process", first_walk)
    report.row("table walk", walk)
    report.row("ss -ltnp", ss)
    report.row("lsof -nP -iTCP -sTCP:LISTEN", lsof)
    report.row("first scan", first, {"first walk": first_walk, **limits}, ("first walk", 1.5))
    report.row("steady scan", steady, limits, steady_bar)
    tools = meter.Cost(0, external.children)
    report.row("scan with external tools", external, {"the tools": tools, **limits}, ("the tools", 1.1))
    print(f"a server of a steady scan: {steady.cpu / servers * 1e3:.0f} us", flush=True)


def main(paths):
    for background in BACKGROUNDS:
        for servers in (5, 25, 100, 300):
            ratio = 0.5 if background == "bare" else 0.1
            bar = ("ss", ratio) if servers == 25 else None
            with population(paths.programs, background, servers, paths.scratch):
                measure(paths, background, servers, bar)
