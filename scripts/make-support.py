#!/usr/bin/env python3
"""Writes docs/support.md from what the players say of themselves.

usage: scripts/make-support.py PROGRAM >docs/support.md

PROGRAM is build/dev/tests/house/support, which lists the record types. The reasons that reports may
give are taken from the source.
"""

import pathlib
import re
import subprocess
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
HEAD = """# What is drawn, and what is not

Made by `scripts/make-support.py` from the tables that the players go by; a test compares. What became
of the records of one file is told by `metafile2svg --report`.

A record is *drawn* when it paints as GDI does, or its state is in force. It is *neutral* when nothing
is done with it and nothing can be missing: a comment, or what a screen ignores. *Weight* says what is
lost where a record is not carried out: drawing, state for the records behind it, or nothing but a
hint. EMF+ records are played before the EMF ones of the same picture, an EMF in a WMF before the WMF.
"""
FORMATS = (
    ("EMF", "EMF records", "[MS-EMF] 2.3"),
    ("EMF+", "EMF+ records", "[MS-EMFPLUS] 2.3, in comments of an EMF"),
    ("WMF", "WMF records", "[MS-WMF] 2.3"),
)
REASON = re.compile(r'\b(approximated|notDone)\(\s*((?:"(?:[^"\\]|\\.)*"\s*)+)\)')


def reasons(outcome):
    found = set()
    for path in sorted((ROOT / "picture").rglob("*")):
        if path.suffix in (".cpp", ".h"):
            for kind, text in REASON.findall(path.read_text()):
                if kind == outcome:
                    found.add("".join(re.findall(r'"((?:[^"\\]|\\.)*)"', text)))
    return sorted(found)


def main():
    lines = subprocess.run([sys.argv[1]], check=True, capture_output=True, text=True).stdout
    rows = [line.split("\t") for line in lines.splitlines()]
    print(HEAD)
    for key, title, source in FORMATS:
        mine = [row for row in rows if row[0] == key]
        drawn = sum(row[3] == "drawn" for row in mine)
        skipped = sum(row[3] == "skipped" for row in mine)
        print(f"## {title}\n\n{source}: {len(mine)} types, {drawn} of them drawn, {skipped} not.\n")
        print("| record | weight | what is done |\n|---|---|---|")
        for _, name, weight, outcome, why in mine:
            done = "**not drawn**: " + why if outcome == "skipped" else outcome
            print(f"| {name} | {weight} | {done} |")
        print()
    print("## Reasons\n\nWhy a record of a type that is drawn may be approximated:\n")
    print("\n".join(f"- {reason}" for reason in reasons("approximated")))
    print("\nWhy it may not be drawn:\n")
    print("\n".join(f"- {reason}" for reason in reasons("notDone")))


main()
