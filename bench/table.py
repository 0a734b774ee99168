#!/usr/bin/env python3
"""Prints the table of a benchmark run: medians, and the ratios that have a bound.

usage: table.py <result.json>...
"""
import json
import statistics
import sys


def main():
    runs = {}
    results = [json.load(open(path, encoding="utf-8")) for path in sys.argv[1:]]
    for run in [run for result in results for run in result["benchmarks"]]:
        if run["run_type"] == "iteration":
            name = run["run_name"].split("/iterations")[0]
            runs.setdefault(name, []).append(run)

    def median(name, field="real_time"):
        return statistics.median(run[field] for run in runs[name])

    def milliseconds(name):
        return median(name) * {"ns": 1e-6, "us": 1e-3, "ms": 1}[runs[name][0]["time_unit"]]

    rows = []
    direct = milliseconds("DirectRun")
    merge = milliseconds("MergeOfTheConfiguration")
    bare = milliseconds("BareEmulator")
    rows.append(("direct run, spawn to the emulator's first byte", f"{direct:.1f} ms",
                 f"{direct / (merge + bare):.2f} times merge + bare emulator", "2"))
    rows.append(("  its configuration merged by velto-regedit", f"{merge:.1f} ms", "", ""))
    rows.append(("  the bare emulator", f"{bare:.1f} ms", "", ""))

    texts = sorted((int(name.split("/")[1]), name) for name in runs if name.startswith("MergeOfValues"))
    empty = texts[0][1]
    for values, name in texts[1:]:
        time = milliseconds(name)
        more = max(run["peak_mib"] for run in runs[name]) - median(empty, "peak_mib")
        size = runs[name][0]["text_mib"]
        rows.append((f"registry text of {size:.1f} MiB, {values} values", f"{time:.0f} ms",
                     f"{more:.1f} MiB more than an empty one", "16 MiB"))
    half, whole = median(texts[-2][1]), median(texts[-1][1])
    rows.append(("  time of the whole against the half", "", f"{whole / half:.2f} times", "linear: 2"))

    scan, bare_scan = milliseconds("ScanOfPlugins"), milliseconds("LibrariesInOneProcess")
    rows.append(("scan of 500 plug-ins", f"{scan:.1f} ms",
                 f"{scan / bare_scan:.2f} times the same calls in one process", "2"))

    start = {n: milliseconds(f"EditorStart/{n}") for n in (0, 5000, 10000)}
    more = start[10000] - start[0]
    reading = milliseconds("ReadingTheFilesOnce")
    rows.append(("start of the editor, 10000 configurations", f"{start[10000]:.0f} ms",
                 f"{more:.0f} ms more than with none: {more / reading:.2f} times reading the files",
                 "2"))
    rows.append(("  the additional time against that of 5000", "",
                 f"{more / (start[5000] - start[0]):.2f} times", "linear: 2"))
    memory = median("EditorStart/10000", "peak_mib") - median("EditorStart/0", "peak_mib")
    rows.append(("  its memory", f"{median('EditorStart/10000', 'peak_mib'):.1f} MiB",
                 f"{memory:.1f} MiB more than with none", "16 MiB"))
    rows.append(("selection of a configuration among 10000",
                 f"{milliseconds('EditorSelection'):.2f} ms", "", "10 ms"))
    launch, by_hand = milliseconds("LaunchFromTheEditor"), milliseconds("LaunchByHand")
    rows.append(("launch from the editor, click to the emulator's first byte", f"{launch:.1f} ms",
                 f"{launch / by_hand:.2f} times two exports + merge + bare emulator", "1.3"))
    rename, writing = milliseconds("RenameOfAGroup"), milliseconds("WritingTheBytesWithOneFlush")
    rows.append(("rename of a group of 10000 files", f"{rename:.0f} ms",
                 f"{rename / writing:.2f} times writing the bytes with one flush", "3"))

    heads = ("Work", "Median", "Ratio or memory", "Bound")
    widths = [max(len(row[i]) for row in [heads, *rows]) for i in range(4)]
    for row in [heads, tuple("-" * width for width in widths), *rows]:
        print("| " + " | ".join(cell.ljust(width) for cell, width in zip(row, widths)) + " |")


main()
