#!/usr/bin/env python3
"""Prints the table of a benchmark run: medians, and the ratios that have a bound.

usage: table.py <result.json>
"""
import json
import statistics
import sys


def main():
    runs = {}
    for run in json.load(open(sys.argv[1], encoding="utf-8"))["benchmarks"]:
        if run["run_type"] == "iteration":
            name = run["run_name"].split("/iterations")[0]
            runs.setdefault(name, []).append(run)

    def median(name, field="real_time"):
        return statistics.median(run[field] for run in runs[name])

    milli = 1e-6  # from nanoseconds
    rows = []
    direct = median("DirectRun") * milli
    merge = median("MergeOfTheConfiguration") * milli
    bare = median("BareEmulator") * milli
    rows.append(("direct run, spawn to the emulator's first byte", f"{direct:.1f} ms",
                 f"{direct / (merge + bare):.2f} times merge + bare emulator", "2"))
    rows.append(("  its configuration merged by velto-regedit", f"{merge:.1f} ms", "", ""))
    rows.append(("  the bare emulator", f"{bare:.1f} ms", "", ""))

    texts = sorted((int(name.split("/")[1]), name) for name in runs if name.startswith("MergeOfValues"))
    empty = texts[0][1]
    for values, name in texts[1:]:
        time = median(name) * milli
        more = max(run["peak_mib"] for run in runs[name]) - median(empty, "peak_mib")
        size = runs[name][0]["text_mib"]
        rows.append((f"registry text of {size:.1f} MiB, {values} values", f"{time:.0f} ms",
                     f"{more:.1f} MiB more than an empty one", "16 MiB"))
    half, whole = median(texts[-2][1]), median(texts[-1][1])
    rows.append(("  time of the whole against the half", "", f"{whole / half:.2f} times", "linear: 2"))

    heads = ("Work", "Median", "Ratio or memory", "Bound")
    widths = [max(len(row[i]) for row in [heads, *rows]) for i in range(4)]
    for row in [heads, tuple("-" * width for width in widths), *rows]:
        print("| " + " | ".join(cell.ljust(width) for cell, width in zip(row, widths)) + " |")


main()
