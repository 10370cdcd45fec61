#!/usr/bin/env python3
"""Converts an archive of metafiles on a cluster of Dask: Debian's python3-distributed.

usage: cluster.py [--scheduler ADDRESS] [--workers N] [--list FILE] [--chunk N] IN OUT TABLE

IN/NAME becomes OUT/NAME.svg. TABLE, a .csv or .parquet (with pandas), gets a row for each file:
verdict, message, size, records lost, time. Without --scheduler a cluster of N processes runs on this
host. All hosts see IN and OUT under the same paths, and have the packages svgtool and distributed.

The same command goes on where an earlier run ended, however that came: OUT/.journal has a line for
each file that is begun and for each that is done. A file during which two processes died is left
out, with the verdict "crashed".
"""

import argparse
import csv
import json
import os
import pathlib
import sys
import time

import dask.distributed
import svgtool

ENDINGS = (".emf", ".wmf", ".emz", ".wmz")
COLUMNS = ("file", "verdict", "message", "bytes", "svg_bytes", "width", "height", "drawing",
           "drawing_lost", "seconds")
MOST_DEATHS = 2


def convert_one(source, target):
    """Converts a file; gives its row without the name."""
    start = time.monotonic()
    row = {}
    try:
        metafile = source.read_bytes()
        row["bytes"] = len(metafile)
        picture = svgtool.convert(metafile)
        document = picture.svg.encode()
        target.parent.mkdir(parents=True, exist_ok=True)
        part = target.with_name(target.name + ".part")
        part.write_bytes(document)
        part.replace(target)
        totals = picture.report["totals"]
        row.update(verdict=picture.verdict, message="; ".join(picture.warnings),
                   svg_bytes=len(document), width=picture.width, height=picture.height,
                   drawing=totals["drawing"], drawing_lost=totals["drawingLost"])
    except (svgtool.Error, OSError, MemoryError) as error:
        row.update(verdict="refused", message=str(error))
    row["seconds"] = round(time.monotonic() - start, 4)
    return row


def read_journal(path):
    """Gives the rows of files that are done, and how often others were begun."""
    rows, begun = {}, {}
    if path.exists():
        for line in path.read_text().splitlines():
            try:
                entry = json.loads(line)
            except ValueError:
                continue  # the process died while it wrote
            if "verdict" in entry:
                rows[entry["file"]] = entry
            else:
                begun[entry["file"]] = begun.get(entry["file"], 0) + 1
    return rows, begun


def convert_chunk(folder, out, number, names):
    """Converts the files of a chunk that are not done yet. Runs on a worker."""
    path = pathlib.Path(out, ".journal", f"{number:08}.jsonl")
    path.parent.mkdir(parents=True, exist_ok=True)
    rows, begun = read_journal(path)
    # Each line reaches the file at once, so that it outlives the process.
    with open(path, "ab", buffering=0) as journal:
        def note(entry):
            journal.write(b"\n" + json.dumps(entry).encode() + b"\n")

        for name in names:
            if name in rows:
                continue
            if begun.get(name, 0) >= MOST_DEATHS:
                row = {"verdict": "crashed", "message": "processes died while it was converted"}
            else:
                note({"file": name})
                row = convert_one(pathlib.Path(folder, name), pathlib.Path(out, name + ".svg"))
            note({"file": name, **row})
    return number


def names_of(folder, list_file):
    """Gives the files of the archive, in an order that does not change."""
    if list_file:
        return pathlib.Path(list_file).read_text(errors="surrogateescape").splitlines()
    found = (os.path.relpath(os.path.join(path, name), folder)
             for path, _, files in os.walk(folder) for name in files
             if name.lower().endswith(ENDINGS))
    return sorted(found)


def write_table(path, out, count):
    """Puts the journals of all chunks together; gives how many files had which verdict."""
    verdicts = {}

    def rows():
        for number in range(count):
            journal = read_journal(pathlib.Path(out, ".journal", f"{number:08}.jsonl"))[0]
            for row in journal.values():
                verdicts[row["verdict"]] = verdicts.get(row["verdict"], 0) + 1
                yield row

    if path.endswith(".parquet"):
        import pandas  # pylint: disable=import-outside-toplevel
        pandas.DataFrame(rows(), columns=COLUMNS).to_parquet(path)
    else:
        with open(path, "w", newline="", encoding="utf-8", errors="surrogateescape") as file:
            table = csv.DictWriter(file, COLUMNS)
            table.writeheader()
            table.writerows(rows())
    return verdicts


def main(arguments=None):
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--scheduler", help="of a cluster that runs already: tcp://HOST:8786")
    parser.add_argument("--workers", type=int, default=os.cpu_count())
    parser.add_argument("--list", help="names below IN, one a line; by default all metafiles there")
    parser.add_argument("--chunk", type=int, default=500, help="files a worker takes at a time")
    parser.add_argument("folder", metavar="IN")
    parser.add_argument("out", metavar="OUT")
    parser.add_argument("table", metavar="TABLE")
    options = parser.parse_args(arguments)

    names = names_of(options.folder, options.list)
    os.makedirs(options.out, exist_ok=True)
    # Chunks are told from one another by their numbers, so they must stay what they are.
    plan = pathlib.Path(options.out, ".journal", "plan.json")
    mine = json.dumps({"chunk": options.chunk, "names": names})
    if plan.exists() and plan.read_text() != mine:
        sys.exit(f"{plan} is of another list or chunk size: take another OUT, or remove it")
    plan.parent.mkdir(exist_ok=True)
    plan.write_text(mine)

    chunks = [names[i:i + options.chunk] for i in range(0, len(names), options.chunk)]
    # A chunk outlives as many processes as its files may cost; another scheduler has to be told.
    dask.config.set({"distributed.scheduler.allowed-failures": MOST_DEATHS * options.chunk})
    cluster = options.scheduler or dask.distributed.LocalCluster(
        n_workers=options.workers, threads_per_worker=1, dashboard_address=None)
    with dask.distributed.Client(cluster) as client:
        futures = client.map(convert_chunk, [os.path.abspath(options.folder)] * len(chunks),
                             [os.path.abspath(options.out)] * len(chunks), range(len(chunks)),
                             chunks, pure=False)
        done = 0
        for future in dask.distributed.as_completed(futures):
            done += len(chunks[future.result()])
            print(f"\r{done} of {len(names)}", end="", file=sys.stderr, flush=True)
    if not options.scheduler:
        cluster.close()
    verdicts = write_table(options.table, options.out, len(chunks))
    print(f"\n{len(names)} files:", ", ".join(f"{n} {v}" for v, n in sorted(verdicts.items())))
    return 0 if not {"refused", "crashed"} & verdicts.keys() else 1


if __name__ == "__main__":
    sys.exit(main())
