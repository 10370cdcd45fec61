#!/usr/bin/env python3
"""Measures how many raster operations documents show as the bits have them.

usage: mixing_table.py METAFILE2SVG

Draws all 256 ternary and 16 binary operations over black, white and three other colours as ground,
pattern and source: on grounds that are boxes of one colour, on an image of all colours, and on
polygons, of which the drawing knows nothing. Each is painted by rsvg-convert and compared with what the
operation makes of the bits. Prints the share of exact pixels and the operations that have others.
Needs Debian's python3-pil and librsvg2-bin.
"""
import io
import itertools
import struct
import subprocess
import sys
import tempfile

from PIL import Image

COLORS = [0x000000, 0xFFFFFF, 0x0000FF, 0x336699, 0xC08040]  # 0xBBGGRR
CELL = 4
NULL_PEN = 0x80000008


def record(kind, *words, extra=b''):
    body = struct.pack(f'<{len(words)}I', *(word & 0xFFFFFFFF for word in words)) + extra
    return struct.pack('<II', kind, 8 + len(body)) + body


def emf(records, width, height):
    body = b''.join([*records, record(14, 0, 16, 20)])
    count, at = 1, 0  # the header is one
    while at < len(body):
        count, at = count + 1, at + struct.unpack_from('<I', body, at + 4)[0]
    head = struct.pack('<4i4i', 0, 0, width - 1, height - 1, 0, 0, width * 2540 // 96, height * 2540 // 96)
    head += b' EMF' + struct.pack('<III2H3I4i', 0x10000, 88 + len(body), count, 2, 0,
                                  0, 0, 0, 9600, 9600, 2540, 2540)
    return struct.pack('<II', 1, 8 + len(head)) + head + body


def brush(color):
    return record(40, 1) + record(39, 1, 0, color, 0) + record(37, 1)


def box(x):
    """A rectangle, whose right and lower edge are on it."""
    return record(43, x, 0, x + CELL, CELL)


def bitmap(colors, x, operation):
    """A row of pixels, each as large as a cell."""
    pixels = b''.join(struct.pack('<I', (c & 0xFF) << 16 | (c & 0xFF00) | c >> 16) for c in colors)
    info = struct.pack('<IiiHHIIiiII', 40, len(colors), 1, 1, 32, 0, len(pixels), 0, 0, 0, 0)
    return record(81, 0, 0, 0, 0, x, 0, 0, 0, len(colors), 1, 80, 40, 120, len(pixels), 0,
                  operation, len(colors) * CELL, CELL, extra=info + pixels)


def ternary(code, pattern, source, ground):
    result = 0
    for i in range(8):
        if code >> i & 1:
            result |= ((pattern if i & 4 else ~pattern) & (source if i & 2 else ~source)
                       & (ground if i & 1 else ~ground))
    return result & 0xFFFFFF


def binary(mode, pen, ground):
    truth = mode - 1
    clear, set_ = truth & 3, truth >> 2
    return ternary(clear | clear << 2 | set_ << 4 | set_ << 6, pen, 0, ground)


def polygon(x):
    """The same, with a corner more."""
    points = [(x, 0), (x + CELL // 2, 0), (x + CELL, 0), (x + CELL, CELL), (x, CELL)]
    return record(3, 0, 0, 0, 0, len(points), *itertools.chain(*points))


def grounds(count, kind):
    """A row of grounds, the last of the varying colours."""
    colors = [COLORS[i % len(COLORS)] for i in range(count)]
    if kind == 'image':
        return bitmap(colors, 0, 0x00CC0020)
    shape = box if kind == 'boxes' else polygon
    return b''.join(brush(color) + shape(i * CELL) for i, color in enumerate(colors))


def measured(tool, records, cells):
    """How many of the cells are of their colour."""
    width = len(cells) * CELL
    with tempfile.TemporaryDirectory() as folder:
        path = f'{folder}/table.emf'
        with open(path, 'wb') as file:
            file.write(emf(records, width, CELL))
        subprocess.run([tool, '-o', f'{folder}/table.svg', path], check=True)
        png = subprocess.run(['rsvg-convert', '-w', str(width), '-h', str(CELL),
                              f'{folder}/table.svg'], check=True, stdout=subprocess.PIPE).stdout
    picture = Image.open(io.BytesIO(png)).convert('RGB')
    colors = [picture.getpixel((x * CELL + CELL // 2, CELL // 2)) for x, _ in cells]
    return sum(blue << 16 | green << 8 | red == color
               for (red, green, blue), (_, color) in zip(colors, cells))


def ternary_table(code, kind):
    combinations = list(itertools.product(COLORS, repeat=3))
    records, cells = [record(37, NULL_PEN), grounds(len(combinations), kind)], []
    for column, (pattern, source, ground) in enumerate(combinations):
        records += [brush(pattern), bitmap([source], column * CELL, code << 16)]
        cells.append((column, ternary(code, pattern, source, ground)))
    return records, cells


def binary_table(mode, kind):
    combinations = list(itertools.product(COLORS, repeat=2))
    records = [record(37, NULL_PEN), grounds(len(combinations), kind), record(20, mode)]
    cells = []
    for column, (pen, ground) in enumerate(combinations):
        records += [brush(pen), box(column * CELL)]
        cells.append((column, binary(mode, pen, ground)))
    return records, cells


def main():
    for title, table, codes, name in (('ternary', ternary_table, range(256), '02X'),
                                      ('binary', binary_table, range(1, 17), 'd')):
        for kind in ('boxes', 'image', 'polygons'):
            exact, count, others = 0, 0, []
            for code in codes:
                records, cells = table(code, kind)
                right = measured(sys.argv[1], records, cells)
                exact, count = exact + right, count + len(cells)
                if right < len(cells):
                    others.append(f'{code:{name}}({len(cells) - right})')
            print(f'{title}, {kind}: {exact} of {count} pixels exact '
                  f'({exact / count:.1%}), {len(codes) - len(others)} of {len(codes)} operations')
            if others:
                print('  not all:', ' '.join(others))


if __name__ == '__main__':
    main()
