"""Prints what conversion_benchmark wrote as JSON as tables in Markdown: of exact texts, and of
pictures.

usage: bench_table.py FILE [BEFORE]     BEFORE: what it wrote for an earlier state
"""

import json
import sys

EXACT = ["family", "records", "ms", "floor ms", "to floor", "to copies", "MB/s in", "MB/s out",
         "elements/s", "peak MB", "growth"]
PICTURE = ["family", "records", "ms", "floor ms", "to floor", "to exact", "MB/s in", "MB/s out",
           "elements/s", "peak MB", "peak to bytes", "growth"]
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


def ratio(runs, key, to):
    """How much more time one kind takes than another for the same files; empty if unknown."""
    if key not in runs or to not in runs:
        return ""
    return f"{runs[key]['cpu_time'] / runs[to]['cpu_time']:.1f}"


def rates(run):
    return [f"{run['in'] / 1e6:.1f}", f"{run['out'] / 1e6:.1f}", f"{run['elements']:.3g}"]


def growth(runs, key):
    """The time to that of 1024 records, by as many times the time as there are times the records:
    1.00 is linear."""
    first, times = (*key[:2], "1024"), int(key[2]) / 1024
    if first not in runs or times <= 1:
        return ""
    return f"{runs[key]['cpu_time'] / runs[first]['cpu_time'] / times:.2f}"


def table(head, kind, second, columns, runs, earlier):
    """A row for each family and number of records, and one for the corpus."""
    head = head + (BEFORE if earlier else [])
    row(head)
    print("|---|" + "---:|" * (len(head) - 1))
    prefix = "" if kind == "convert" else f"{kind} "
    for key, run in runs.items():
        if key[0] == kind:
            floor = (f"{prefix}floor", *key[1:])
            cells = [*key[1:], f"{run['cpu_time']:.3f}", f"{runs[floor]['cpu_time']:.3f}",
                     ratio(runs, key, floor), ratio(runs, key, (second, *key[1:])), *rates(run),
                     *(f"{run[name] * scale:.1f}" for name, scale in columns), growth(runs, key)]
        elif key[0] == f"{prefix}corpus":
            floor = None
            to_exact = ratio(runs, key, ("corpus",)) if prefix else ""
            cells = [f"all {run['files']:.0f} files of the corpus", "", f"{run['cpu_time']:.1f}",
                     "", "", to_exact, *rates(run)]
        else:
            continue
        if key in earlier:
            cells += [""] * (len(head) - len(BEFORE) - len(cells))
            cells += [f"{earlier[key]['cpu_time']:.3f}", ratio(earlier, key, floor)]
        row(cells + [""] * (len(head) - len(cells)))


def main(path, before=None):
    runs = read(path)
    earlier = read(before) if before else {}
    peak = ("peak", 1e-6)
    table(EXACT, "convert", "copies", [peak], runs, earlier)
    print()
    table(PICTURE, "picture", "convert", [peak, ("peak to bytes", 1)], runs, earlier)


if __name__ == "__main__":
    main(*sys.argv[1:])
