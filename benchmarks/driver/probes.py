# SPDX-License-Identifier: MIT
"""One probe pass, compared with the same on plain sockets and one epoll."""

import statistics

import meter
import report
from population import population

ALTERNATIONS = 9
BAR = 1.6


def main(paths):
    for servers in (25, 200):
        report.heading(f"probes: {servers} servers")
        baseline, ours = [], []
        with population(paths.programs, "idle", servers, paths.scratch) as ports:
            # Alternating, so that other load on the machine affects both alike.
            for _ in range(ALTERNATIONS):
                baseline.append(meter.reported([paths.programs / "probe_baseline", "41", *ports], servers)["pass"])
                ours.append(meter.reported([paths.programs / "probe_cost", "41", *ports], servers)["pass"])
        report.row("baseline", meter.middle(baseline))
        report.row("probe pass", meter.middle(ours))
        ratio = statistics.median(one.cpu / limit.cpu for one, limit in zip(ours, baseline))
        print(f"{ratio:.2f} x the baseline, pair by pair ({'meets' if ratio <= BAR else 'MISSES'} {BAR})", flush=True)
