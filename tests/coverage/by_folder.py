#!/usr/bin/env python3
"""Adds up gcovr's summary by folder and compares it with the least that is asked for.

by_folder.py SUMMARY.json FOLDER=PERCENT ...    exits with 1 where a folder has fewer lines
"""

import collections
import json
import sys


def percent(covered, total):
    return 100.0 * covered / total if total else 100.0


def main(path, bounds):
    with open(path, encoding="utf-8") as file:
        files = json.load(file)["files"]
    sums = collections.defaultdict(collections.Counter)
    for entry in files:
        folder = entry["filename"].split("/")[0]
        for key in ("line_covered", "line_total", "branch_covered", "branch_total"):
            sums[folder][key] += entry[key]

    short = []
    print(f"{'folder':14} {'lines':>13} {'%':>6} {'least':>6} {'branches':>13} {'%':>6}")
    for bound in bounds:
        folder, least = bound.split("=")
        counts = sums[folder]
        if not counts["line_total"]:
            short.append(f"{folder}: no line was counted")
            continue
        lines = percent(counts["line_covered"], counts["line_total"])
        branches = percent(counts["branch_covered"], counts["branch_total"])
        print(
            f"{folder:14} {counts['line_covered']:6}/{counts['line_total']:6} {lines:6.1f} {least:>6}"
            f" {counts['branch_covered']:6}/{counts['branch_total']:6} {branches:6.1f}"
        )
        if lines < float(least):
            short.append(f"{folder}: {lines:.1f} % of the lines are reached, {least} % are asked for")
    for line in short:
        print(f"coverage: {line}", file=sys.stderr)
    return 1 if short else 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2:]))
