#!/usr/bin/env python3
"""Writes core/fonts/KnownFaces_Data.cpp from the Liberation and URW fonts that are installed.
usage: scripts/make-widths.py >core/fonts/KnownFaces_Data.cpp (needs python3-fonttools)"""

import subprocess

from fontTools.afmLib import AFM
from fontTools.ttLib import TTFont

STYLES = ("Regular", "Bold", "Italic", "Bold Italic")
LAST = 0x2265  # what lies behind is drawings
WINDOWS = {ord(c) for c in bytes(range(32, 256)).decode("cp1252", "ignore")}


def font(family, style):
    path = subprocess.run(["fc-match", "-f", "%{file}", f"Liberation {family}:style={style}"],
                          stdout=subprocess.PIPE, check=True).stdout.decode()
    font = TTFont(path)
    assert font["name"].getDebugName(1) == f"Liberation {family}", path
    assert font["name"].getDebugName(2) == style and font["head"].unitsPerEm == 2048, path
    return font


def row(numbers):
    return "{ " + ", ".join(map(str, numbers)) + " }"


def numbers(font):
    """The fields of FontShape and its FontTables."""
    os2, hhea, post = font["OS/2"], font["hhea"], font["post"]
    tables = (2048, os2.usWinAscent, os2.usWinDescent, hhea.ascent, hhea.descent, hhea.lineGap,
              os2.xAvgCharWidth)
    # The middle of the line below letters, as FreeType gives it.
    lines = (post.underlinePosition - post.underlineThickness // 2, post.underlineThickness,
             os2.yStrikeoutPosition, os2.yStrikeoutSize)
    return f"{{ true, {row(tables)}, {', '.join(map(str, lines))} }}"


def advances(font):
    return {code: font["hmtx"][glyph][0] for code, glyph in font.getBestCmap().items()
            if code <= LAST}


def pairs(font):
    """Of letters that Windows-1252 has, the no-break space among them, which has a blank's glyph."""
    codes = {}
    for code, glyph in font.getBestCmap().items():
        if code in WINDOWS:
            codes.setdefault(glyph, []).append(code)
    return {(left, right): by
            for glyphs, by in font["kern"].kernTables[0].kernTable.items()
            for left in codes.get(glyphs[0], ()) for right in codes.get(glyphs[1], ())}


def symbols(name):
    """Of the codes from 20 on. Those of URW are as wide as those that every system has."""
    afm = AFM(f"/usr/share/fonts/type1/urw-base35/{name}.afm")
    widths = {code: width for code, width, _ in map(afm.__getitem__, afm.chars())}
    return [str(widths.get(code, 0)) for code in range(0x20, 0xFF)]


def put(kind, name, items, width=100):
    """An array, and what lets others see it, of which they need not know the length."""
    print(f"\nstatic constexpr {kind} {name}[] = {{")
    line = "   "
    for item in items:
        if len(line) + len(item) + 2 > width:
            print(line)
            line = "   "
        line += f" {item},"
    print(line, "};", sep="\n")
    print(f"constinit const std::span<const {kind}> k{name[0].upper()}{name[1:]} = {name};")


def main():
    fonts = {family: [font(family, style) for style in STYLES]
             for family in ("Sans", "Serif", "Mono")}
    print("""// Made by scripts/make-widths.py.

#include "core/fonts/KnownFaces_Data.h"

// clang-format off
namespace svgtool::known {""")
    put("FontShape", "shapes", [numbers(each) for family in fonts.values() for each in family])
    columns = [advances(each) for family in ("Sans", "Serif") for each in fonts[family]]
    codes = sorted(set.intersection(*map(set, columns)))
    runs = [code for code in codes if code - 1 not in codes]
    rows = {code: tuple(column[code] for column in columns) for code in codes}
    kinds = sorted(set(rows.values()))
    assert len(kinds) <= 256
    ends = [code for code in codes if code + 1 not in codes]
    put("Run", "runs", [row(each) for each in zip(runs, ends)])
    put("uint8_t", "widthOf", [str(kinds.index(rows[code])) for code in codes])
    put("Widths", "widths", [f"{{ {row(kind)} }}" for kind in kinds])
    for family in ("sans", "serif"):
        styles = [pairs(each) for each in fonts[family.capitalize()]]
        put("Pair", f"{family}Pairs",
            [row((*pair, row(each.get(pair, 0) for each in styles)))
             for pair in sorted(set().union(*styles))])
    put("uint16_t", "symbolWidths", symbols("StandardSymbolsPS"))
    put("uint16_t", "dingbatsWidths", symbols("D050000L"))
    print("\n} // namespace svgtool::known")


main()
