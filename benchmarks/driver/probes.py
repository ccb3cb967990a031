"""One probe pass beside bare sockets and an epoll."""

import meter
import report
from population import population


def main(paths):
    for servers in (25, 200):
        report.heading(f"probes: {servers} servers")
        with population(paths.programs, "bare", servers, paths.scratch) as ports:
            bare = meter.reported([paths.programs / "bare_probes", "41", *ports], servers)["pass"]
            passes = meter.reported([paths.programs / "probe_cost", "41", *ports], servers)
        limits = {"bare epoll": bare}
        report.row("bare epoll", bare)
        report.row("first pass", passes["first"], limits)
        report.row("probe pass", passes["pass"], limits, ("bare epoll", 1.6))
