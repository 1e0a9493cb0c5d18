"""Figures of the slideshow benchmark from what the programs print and what /proc says:
no display needed, so they are tested on their own (tests/benchmarks)."""
import math
import re
import statistics

FRAME_LINE = re.compile(r"Frame after ([0-9.]+) ms: (\w+(?: \w+)?)")


def frame_intervals(text):
    """The intervals of every "Frame after N ms: KIND" line, by kind ("empty", "drift",
    "transition crossFade", ...), in the order printed."""
    kinds = {}
    for match in FRAME_LINE.finditer(text):
        kinds.setdefault(match.group(2), []).append(float(match.group(1)))
    return kinds


def percentile(values, share):
    """The nearest-rank percentile: the smallest value with at least `share` of all at or below it."""
    ordered = sorted(values)
    rank = max(1, math.ceil(share * len(ordered)))
    return ordered[rank - 1]


def interval_summary(values):
    return {"frames": len(values), "median": statistics.median(values), "p99": percentile(values, 0.99),
            "longest": max(values)}


def rss_swing(curve):
    """The largest rise and the largest fall, in percent, of the samples after the first
    against the first: `curve` is [(advances, kB), ...]."""
    base = curve[0][1]
    changes = [100.0 * (kb - base) / base for _, kb in curve[1:]]
    return (max(changes, default=0.0), min(changes, default=0.0))


def verdict(value, goal):
    """Whether a figure where less is better meets its goal."""
    return "met" if value <= goal else "NOT met"
