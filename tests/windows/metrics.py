#!/usr/bin/env python3
"""Compares the font engine with the recorded text metrics. metrics_main.cpp says how it is asked.

usage: metrics.py text-metrics.json COMMAND...    which runs metrics_main

Prints each mismatch and how many numbers were compared; what is recorded and not compared is named
on stderr. The faces and weights that GDI selected are not compared: the font engine does not tell
them. The status is 1 if there was a mismatch, 2 if there is nothing to compare and 77 if what that
takes is missing.
"""

import collections
import json
import os
import shutil
import subprocess
import sys

METRICS = ("tmHeight", "tmAscent", "tmDescent", "tmInternalLeading", "tmExternalLeading",
           "tmAveCharWidth")
FACE = "Liberation Sans"
# The recorded numbers hold for these files only: Liberation 1.07.4 and DejaVu 2.37.
FONTS = [*(f"Liberation {kind}:fontversion=70123" for kind in ("Sans", "Serif", "Mono")),
         *(f"DejaVu {kind}:fontversion=155320" for kind in ("Sans", "Serif", "Sans Mono"))]


def text(value):
    units = memoryview(value.encode("utf-16-le", "surrogatepass")).cast("H").tolist()
    return [len(units), *units]


def question(kind, face="", weight=0, height=0, string=""):
    return " ".join(map(str, [kind, weight, height, *text(face), *text(string)]))


def rows_of(recorded):
    """Gives (section, question, its answer), where None stands for a number not recorded. The
    numbers of a font come twice, without and with a text; the extent of the text is behind them.
    """
    def extent(width, height=None):
        return [None] * 12 + [width, height]

    yield "dpi", question("dpi"), [recorded["dpi"]]
    for font in recorded["fonts"]:
        asked = font["face"], font["weight"], font["height"]
        yield "fonts", question("font", *asked), [font[name] for name in METRICS] * 2 + [None] * 2
        for string, size in zip(recorded["strings"], font["extents"], strict=True):
            yield "extents", question("font", *asked, string), extent(*size)
    edges = recorded["edges"]
    for string, width, height in edges["extents"]:
        asked = edges["face"], edges["weight"], edges["height"]
        yield "edges", question("font", *asked, string), extent(width, height)
    for weight, _, width in recorded["weights"]:
        yield "weights", question("font", FACE, weight, -16, "Weight"), extent(width)
    for asked, height, descent, internal, external in recorded["smallHeights"]:
        numbers = [height, None, descent, internal, external, None] * 2 + [None] * 2
        yield "smallHeights", question("font", FACE, 400, asked), numbers
    # Glyph 3 is the blank's and the no-break space's; the letters follow in ASCII's order.
    for glyphs, characters in (("\x24\x03\x44", "A a"), ("\x24\x00", ""), ("\x24\uffff", ""),
                               ("", "")):
        yield "glyphs", question("glyphs", FACE, 400, 0, glyphs), text(characters)
    # The engine does not tell which face it selected, so a text is measured in both.
    installed = {font["selected"] for font in recorded["fonts"]}
    for asked, selected in recorded["substitutes"]:
        # Where GDI was set to replace a face it names that one, not the font that is measured.
        if selected not in installed:
            print(f"not compared: substitute of {asked!r}, recorded as itself", file=sys.stderr)
            continue
        for weight in 400, 700:
            size = weight, 100, "The quick brown fox"
            yield "substitutes", question("font", asked, *size), question("font", selected, *size)


missing = [font for font in FONTS
           if not shutil.which("fc-list") or not subprocess.check_output(["fc-list", font])]
missing += [path for path in sys.argv[1:2] if not os.path.exists(path)]
if missing:
    print("missing:", *missing, sep="\n")
    sys.exit(77)
with open(sys.argv[1], encoding="utf-8") as file:
    rows = list(rows_of(json.load(file)))
questions = list({each: None for _, *both in rows for each in both if isinstance(each, str)})
output = subprocess.run(sys.argv[2:], input="\n".join(questions) + "\n", text=True, check=True,
                        stdout=subprocess.PIPE).stdout
answers = dict(zip(questions, ([*map(int, line.split())] for line in output.splitlines()),
                   strict=True))
compared, mismatches = collections.Counter(), 0
for section, line, expected in rows:
    if isinstance(expected, str):
        expected = [None] * 12 + answers[expected][12:]
    pairs = [(number, actual) for number, actual in zip(expected, answers[line])
             if number is not None]
    compared[section] += len(pairs)
    if any(number != actual for number, actual in pairs):
        mismatches += 1
        print(f"MISMATCH: {section}: {line}: {answers[line]}, not {expected}")
print("numbers compared:", dict(compared), "mismatches:", mismatches)
sys.exit(mismatches > 0 if len(+compared) == 8 else 2)
