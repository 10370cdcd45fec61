#!/usr/bin/env python3
"""Turns the recorded text metrics into the rows that metrics_main.cpp reads.

usage: metrics_rows.py text-metrics.json >ROWS

What is recorded and gets no row is named on stderr. The faces and weights that GDI selected are
not compared: the font engine does not tell them.

A row is a line of fields with blanks between them: section, kind, and what the kind asks for.
Texts stand behind a "=", with \\uXXXX for each UTF-16 unit that is no visible ASCII character, and
for the backslash. "*" stands for a number that was not recorded.
"""

import json
import sys

METRICS = (
    "tmHeight",
    "tmAscent",
    "tmDescent",
    "tmInternalLeading",
    "tmExternalLeading",
    "tmAveCharWidth",
)
FACE = "Liberation Sans"


def text(value):
    units = memoryview(value.encode("utf-16-le", "surrogatepass")).cast("H")
    return "=" + "".join(
        chr(unit) if 0x20 < unit < 0x7F and unit != 0x5C else f"\\u{unit:04x}" for unit in units
    )


def row(section, kind, *fields):
    print(section, kind, *fields)


def main():
    with open(sys.argv[1], encoding="utf-8") as file:
        recorded = json.load(file)
    for section in "fonts", "strings", "weights", "smallHeights", "substitutes":
        if not recorded[section]:
            sys.exit(f"{section} is empty")
    if not recorded["edges"]["extents"]:
        sys.exit("edges is empty")

    row("dpi", "dpi", recorded["dpi"])
    for font in recorded["fonts"]:
        asked = text(font["face"]), font["weight"], font["height"]
        row("fonts", "metrics", *asked, *(font[name] for name in METRICS))
        for string, extent in zip(recorded["strings"], font["extents"], strict=True):
            row("extents", "extent", *asked, text(string), *extent)

    edges = recorded["edges"]
    asked = text(edges["face"]), edges["weight"], edges["height"]
    for string, width, height in edges["extents"]:
        row("edges", "extent", *asked, text(string), width, height)
    for weight, _, width in recorded["weights"]:
        row("weights", "extent", text(FACE), weight, -16, text("Weight"), width, "*")
    for asked, height, descent, internal, external in recorded["smallHeights"]:
        numbers = height, "*", descent, internal, external, "*"
        row("smallHeights", "metrics", text(FACE), 400, asked, *numbers)
    installed = {font["selected"] for font in recorded["fonts"]}
    for asked, selected in recorded["substitutes"]:
        # Where GDI was set to replace a face it names that one, not the font that is measured.
        if selected not in installed:
            print(f"not compared: substitute of {asked!r}, recorded as itself", file=sys.stderr)
            continue
        for weight in 400, 700:
            row("substitutes", "substitute", text(asked), text(selected), weight, 100)

    # Glyph 3 is the blank's and the no-break space's; the letters follow in ASCII's order.
    for glyphs, characters in (
        ("\x24\x03\x44", "A a"),
        ("\x24\x00", ""),
        ("\x24\uffff", ""),
        ("", ""),
    ):
        row("glyphs", "glyphs", text(FACE), 400, text(glyphs), text(characters))


main()
