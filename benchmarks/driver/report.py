# SPDX-License-Identifier: MIT
"""Tables of what was measured, with the ratio to the limit measured in the same run."""


def heading(text):
    print(f"\n{text}\n{'-' * len(text)}", flush=True)


def row(name, cost, limits=None, bar=None):
    """`limits` names what the cost is divided by; `bar` is the ratio that is not to be exceeded, as
    (name of a limit, ratio)."""
    ratios = []
    for limit, measured in (limits or {}).items():
        ratio = cost.total / measured.total if measured.total else float("inf")
        verdict = ""
        if bar and bar[0] == limit:
            verdict = f" ({'meets' if ratio <= bar[1] else 'MISSES'} {bar[1]:g})"
        ratios.append(f"{ratio:.2f} x {limit}{verdict}")
    print(f"{name:34} cpu {cost.total:9.2f} ms   wall {cost.wall:9.2f} ms   {', '.join(ratios)}", flush=True)
