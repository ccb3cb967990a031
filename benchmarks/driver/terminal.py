# SPDX-License-Identifier: MIT
"""portolanctl as a whole process, compared with the one-liners that it replaces."""

import meter
import report
from population import BACKGROUNDS, population
from scan import LSOF, SS


def main(paths):
    for background in BACKGROUNDS:
        for servers in (5, 25, 100):
            report.heading(f"terminal: {servers} servers, {background}")
            with population(paths.programs, background, servers, paths.scratch):
                limits = {"lsof": meter.median(LSOF, 9), "ss": meter.median(SS, 9)}
                ours = meter.median([paths.bin / "portolanctl", "list", "--no-probe"], 15)
            for name, cost in limits.items():
                report.row(name, cost)
            report.row("portolanctl list --no-probe", ours, limits)
