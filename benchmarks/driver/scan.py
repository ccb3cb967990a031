"""One scan, by both roads, beside what the system's own tools take for the same question."""

import os

import meter
import report
from population import BACKGROUNDS, population

SS = ["ss", "-ltnp"]
LSOF = ["lsof", "-nP", "-iTCP", "-sTCP:LISTEN"]
EXTERNAL = dict(os.environ, PORTOLAN_TOOLS="external")
STEADY_ROUNDS = 31


def measure(paths, background, servers, steady_bar):
    report.heading(f"scan: {servers} servers, {background}")
    walk = meter.reported([paths.programs / "table_walk", "9"], servers)
    ss = meter.median(SS, 9)
    lsof = meter.median(LSOF, 5)
    builtin = meter.reported([paths.programs / "scan_cost", str(STEADY_ROUNDS)], servers)
    external = meter.reported([paths.programs / "scan_cost", "1"], servers, EXTERNAL)["steady"]

    limits = {"table walk": walk["walk"], "ss": ss}
    report.row("table walk, alone", walk["walk"])
    report.row("ss -ltnp", ss)
    report.row("lsof -nP -iTCP -sTCP:LISTEN", lsof)
    report.row("first scan", builtin["first"], limits, ("table walk", 1.5))
    report.row("steady scan", builtin["steady"], limits, steady_bar)
    tools = meter.Cost(0, external.children)
    report.row("scan with external tools", external, {"the tools": tools, **limits}, ("the tools", 1.1))
    return builtin["steady"]


def main(paths):
    for background in BACKGROUNDS:
        steady = {}
        for servers in (5, 25, 100, 300):
            ratio = 0.5 if background == "bare" else 0.1
            bar = ("ss", ratio) if servers == 25 else None
            with population(paths.programs, background, servers, paths.scratch):
                steady[servers] = measure(paths, background, servers, bar)
        per_server = (steady[300].cpu - steady[25].cpu) / 275
        early = (steady[100].cpu - steady[25].cpu) / 75
        print(f"each further server: {early * 1e3:.1f} us up to 100, {per_server * 1e3:.1f} us up to 300")
