#!/usr/bin/env python3
"""Measures how much an optimiser still takes off the documents of the picture path.

  measure-size.py [--svgo PROGRAM] [--config JSON] [--sample N] TOOL FILE|FOLDER...

TOOL (metafile2svg) converts the files, and svgo (by npm; a measure only, nothing is built with it)
works on the documents with its default plug-ins at the precision of their own numbers. Prints for
each document its bytes after and before, and their ratio; then the same of all of them, the median,
without what images hold, and packed by gzip. Of a sample of N documents it compares pictures before
and after, by librsvg. --config has parameters of plug-ins that replace the defaults, such as
'{"mergePaths": false}'.
"""

import argparse
import gzip
import json
import math
import pathlib
import re
import statistics
import subprocess
import tempfile

import numpy
from PIL import Image


def decimals(document):
    """Those on the grid of the document's lengths: a thousandth of a pixel."""
    head = re.search(r'<svg[^>]* width="([^"]*)"[^>]* viewBox="\S+ \S+ (\S+)', document)
    tolerance = float(head[2]) / float(head[1]) / 1000
    return max(0, math.ceil(math.log10(0.5 / tolerance) - 1e-9))


def optimise(args, documents, out, folder):
    """Lets svgo write the documents, all of one precision, as files of the same names."""
    for precision in sorted({decimals(text) for text in documents.values()}):
        names = [name for name, text in documents.items() if decimals(text) == precision]
        fine = {"floatPrecision": max(precision, 4)}
        overrides = {
            "convertPathData": {"floatPrecision": precision},
            "cleanupNumericValues": fine,
            "convertTransform": {**fine, "transformPrecision": 8, "degPrecision": 4},
            **json.loads(args.config),
        }
        plugins = [{"name": "preset-default", "params": {"overrides": overrides}}]
        config = folder / "config.mjs"
        config.write_text("export default " + json.dumps({"plugins": plugins}))
        for some in (names[i : i + 200] for i in range(0, len(names), 200)):
            subprocess.run([args.svgo, "--config", config, "-q", "-i", *some,
                            "-o", *(out / str(name.name) for name in some)], check=True)


def pixels(path):
    run = subprocess.run(["rsvg-convert", "--unlimited", "-b", "white", path], capture_output=True)
    with tempfile.TemporaryFile() as file:
        file.write(run.stdout)
        return numpy.asarray(Image.open(file).convert("RGB"), dtype=int)


def changed(before, after):
    """The share of pixels that differ by more than what rounding does."""
    a, b = pixels(before), pixels(after)
    return 1.0 if a.shape != b.shape else float((abs(a - b).max(axis=2) > 32).mean())


def without_images(text):
    return re.sub(r"base64,[^\"]*", "", text)


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("--svgo", default="svgo")
    parser.add_argument("--config", default="{}")
    parser.add_argument("--sample", type=int, default=40)
    parser.add_argument("tool")
    parser.add_argument("files", nargs="+")
    args = parser.parse_args()
    with tempfile.TemporaryDirectory() as name:
        folder = pathlib.Path(name)
        measure(args, folder)


def measure(args, folder):
    (folder / "before").mkdir()
    (folder / "after").mkdir()
    found = [path for name in map(pathlib.Path, args.files)
             for path in (sorted(name.rglob("*")) if name.is_dir() else [name])]
    for number, path in enumerate(p for p in found if p.suffix.lower() in (".emf", ".wmf")):
        out = folder / "before" / f"{number}-{path.name}.svg"
        subprocess.run([args.tool, "-q", path, "-o", out], stderr=subprocess.DEVNULL)
    documents = {p: p.read_text() for p in sorted((folder / "before").iterdir())}
    optimise(args, documents, folder / "after", folder)

    rows = []
    for path, before in documents.items():
        after = (folder / "after" / path.name).read_text()
        rows.append([len(text.encode()) for kind in (str, without_images)
                     for text in (kind(after), kind(before))]
                    + [len(gzip.compress(text.encode())) for text in (after, before)])
        print("%5.3f %8d %8d  %s" % (rows[-1][0] / rows[-1][1], *rows[-1][:2], path.name))
    sums = [sum(column) for column in zip(*rows)]
    for i, what in enumerate(["all", "without images", "packed"]):
        ratios = [row[2 * i] / row[2 * i + 1] for row in rows]
        print("%5.3f %8d %8d  %s; median %.3f, mean %.3f"
              % (sums[2 * i] / sums[2 * i + 1], *sums[2 * i : 2 * i + 2], what,
                 statistics.median(ratios), statistics.mean(ratios)))
    step = max(1, len(documents) // args.sample) if args.sample else len(documents) + 1
    for path in sorted(documents)[step - 1 :: step]:
        share = changed(path, folder / "after" / path.name)
        if share > 0.001:
            print("%5.2f %% of the pixels differ in %s" % (share * 100, path.name))


if __name__ == "__main__":
    main()
