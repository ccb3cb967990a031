"""One probe pass beside bare sockets and an epoll."""

import statistics

import meter
import report
from population import population

ALTERNATIONS = 9
BAR = 1.6


def main(paths):
    for servers in (25, 200):
        report.heading(f"probes: {servers} servers")
        bare, ours = [], []
        with population(paths.programs, "bare", servers, paths.scratch) as ports:
            # In turns, so that what else the machine does meets both alike.
            for _ in range(ALTERNATIONS):
                bare.append(meter.reported([paths.programs / "bare_probes", "41", *ports], servers)["pass"])
                ours.append(meter.reported([paths.programs / "probe_cost", "41", *ports], servers)["pass"])
        report.row("bare epoll", meter.middle(bare))
        report.row("probe pass", meter.middle(ours))
        ratio = statistics.median(one.cpu / limit.cpu for one, limit in zip(ours, bare))
        print(f"{ratio:.2f} x bare epoll, pair by pair ({'meets' if ratio <= BAR else 'MISSES'} {BAR})", flush=True)
