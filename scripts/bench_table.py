"""Prints what conversion_benchmark wrote as JSON as one table in Markdown.

usage: bench_table.py FILE
"""

import json
import sys

HEAD = ["family", "records", "ms", "floor ms", "to floor", "to copies", "MB/s in", "MB/s out", "elements/s",
        "peak MB", "growth"]


def main(path):
    with open(path, encoding="utf-8") as file:
        runs = json.load(file)["benchmarks"]
    kinds = {"convert": {}, "floor": {}, "copies": {}}
    corpus = None
    for run in runs:
        kind, _, rest = run["name"].partition(":")
        if kind == "corpus":
            corpus = run
            continue
        family, _, count = rest.rpartition("/")
        kinds[kind][family, int(count)] = run

    print("| " + " | ".join(HEAD) + " |")
    print("|---|" + "---:|" * (len(HEAD) - 1))
    smallest = {}
    for (family, count), run in kinds["convert"].items():
        time = run["cpu_time"]
        floor = kinds["floor"][family, count]["cpu_time"]
        copies = kinds["copies"][family, count]["cpu_time"]
        first = smallest.setdefault(family, (count, time))
        # As many times the time as there are times the records is 1.00: linear.
        growth = "" if count == first[0] else f"{time / first[1] / (count / first[0]):.2f}"
        print(f"| {family} | {count} | {time:.3f} | {floor:.3f} | {time / floor:.1f} "
              f"| {time / copies:.1f} | {run['in'] / 1e6:.1f} | {run['out'] / 1e6:.1f} "
              f"| {run['elements']:.3g} | {run['peak'] / 1e6:.1f} | {growth} |")
    if corpus is not None:
        print(f"| all {corpus['files']:.0f} files of the corpus | | {corpus['cpu_time']:.1f} | | | "
              f"| {corpus['in'] / 1e6:.1f} | {corpus['out'] / 1e6:.1f} "
              f"| {corpus['elements']:.3g} | | |")


if __name__ == "__main__":
    main(sys.argv[1])
