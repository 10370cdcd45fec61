"""Prints what conversion_benchmark wrote as JSON as one table in Markdown.

usage: bench_table.py FILE [BEFORE]     BEFORE: what it wrote for an earlier state
"""

import json
import sys

HEAD = ["family", "records", "ms", "floor ms", "to floor", "to copies", "MB/s in", "MB/s out",
        "elements/s", "peak MB", "growth"]
BEFORE = ["ms before", "to floor before"]


def read(path):
    """The runs by kind, family and number of records; of several the one that took the least time,
    since what else the machine does can only add to it."""
    runs = {}
    with open(path, encoding="utf-8") as file:
        for run in json.load(file)["benchmarks"]:
            if run["run_type"] != "iteration":
                continue
            key = tuple(run["name"].replace("/", ":").split(":"))
            if key not in runs or run["cpu_time"] < runs[key]["cpu_time"]:
                runs[key] = run
    return runs


def row(cells):
    print("| " + " | ".join(cells) + " |")


def main(path, before=None):
    runs = read(path)
    earlier = read(before) if before else {}
    head = HEAD + (BEFORE if earlier else [])
    row(head)
    print("|---|" + "---:|" * (len(head) - 1))
    smallest = {}
    for key, run in runs.items():
        if key[0] == "convert":
            name, count = key[1:]
            time = run["cpu_time"]
            floor, copies = (runs[kind, name, count]["cpu_time"] for kind in ("floor", "copies"))
            first = smallest.setdefault(name, (int(count), time))
            # As many times the time as there are times the records is 1.00: linear.
            times = int(count) / first[0]
            cells = [name, count, f"{time:.3f}", f"{floor:.3f}", f"{time / floor:.1f}",
                     f"{time / copies:.1f}", f"{run['in'] / 1e6:.1f}", f"{run['out'] / 1e6:.1f}",
                     f"{run['elements']:.3g}", f"{run['peak'] / 1e6:.1f}",
                     f"{time / first[1] / times:.2f}" if times > 1 else ""]
        elif key[0] == "corpus":
            cells = [f"all {run['files']:.0f} files of the corpus", "", f"{run['cpu_time']:.1f}",
                     "", "", "", f"{run['in'] / 1e6:.1f}", f"{run['out'] / 1e6:.1f}",
                     f"{run['elements']:.3g}", "", ""]
        else:
            continue
        if key in earlier:
            old = earlier[key]["cpu_time"]
            floor = earlier.get(("floor", *key[1:]))
            cells += [f"{old:.3f}", f"{old / floor['cpu_time']:.1f}" if floor else ""]
        row(cells + [""] * (len(head) - len(cells)))


if __name__ == "__main__":
    main(*sys.argv[1:])
