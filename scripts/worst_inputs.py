#!/usr/bin/python3
"""Builds the worst metafiles known of each family, and measures what the tool makes of them.

usage: worst_inputs.py run TOOL BYTES [PART OF A NAME]... [-- OPTION...]
       worst_inputs.py build FOLDER BYTES [PART OF A NAME]...

What takes over 2 s, 256 MB or 300 MB of document is marked. Memory is told as a multiple of input
and document, without that of an empty picture; time is of the process alone, but the machine should
have nothing else to do.
"""
import gzip
import math
import os
import random
import resource
import struct
import sys
import tempfile

def dw(*v): return struct.pack('<%dI' % len(v), *[x & 0xFFFFFFFF for x in v])
def w(*v): return struct.pack('<%dH' % len(v), *[x & 0xFFFF for x in v])
def f(*v): return struct.pack('<%df' % len(v), *v)

def rec(t, body=b''):
    body += b'\0' * (-len(body) % 4)
    return dw(t, 8 + len(body)) + body

def emf(records, handles=16, frame=(0, 0, 21000, 29700), px=(1000, 1000), mm=(265, 265), bounds=(0,0,790,1120)):
    body = b''.join(records)
    eof = dw(14, 20, 0, 16, 20)
    head = dw(1, 88) + dw(*bounds) + dw(*frame) + b' EMF' + dw(0x10000, 88 + len(body) + 20, len(records) + 2)
    head += w(handles, 0) + dw(0, 0, 0) + dw(*px) + dw(*mm)
    return head + body + eof

def wrec(fn, body=b''):
    body += b'\0' * (len(body) % 2)
    return dw(3 + len(body) // 2) + w(fn) + body

def wmf(records, objects=16, box=(0, 0, 1000, 1000)):
    body = b''.join(records) + dw(3) + w(0)
    head = w(1, 9, 0x300) + dw(9 + len(body) // 2) + w(objects) + dw(max(map(len, records)) // 2) + w(0)
    place = dw(0x9AC6CDD7) + w(0, *box, 96) + dw(0)
    check = 0
    for i in range(0, 20, 2): check ^= struct.unpack_from('<H', place, i)[0]
    return place + w(check) + head + body

def plus(t, flags, data=b''):
    data += b'\0' * (-len(data) % 4)
    return w(t, flags) + dw(12 + len(data), len(data)) + data

PV = 0xDBC01002
PHEAD = plus(0x4001, 0, dw(PV, 0, 96, 96))
def plusfile(records, per=200):
    out = [rec(70, dw(4 + len(PHEAD)) + b'EMF+' + PHEAD)]
    for i in range(0, len(records), per):
        b = b''.join(records[i:i + per])
        out.append(rec(70, dw(4 + len(b)) + b'EMF+' + b))
    b = plus(0x4002, 0)
    out.append(rec(70, dw(4 + len(b)) + b'EMF+' + b))
    return emf(out)
def pobj(kind, slot, data): return plus(0x4008, kind << 8 | slot, data)
BRUSH, PEN, PATH, REGION, IMAGE, FONT, FORMAT, ATTRS, CAP = range(1, 10)
def solid(c=0xFF203040): return dw(PV, 0, c)
def ppath(pts, types=None, flags=0):
    types = types or [0] + [1] * (len(pts) - 1)
    return dw(PV, len(pts), flags) + b''.join(f(*p) for p in pts) + bytes(types)
def pen(flags=0, width=2.0, extra=b'', brush=None):
    return dw(PV, 0, flags, 2) + f(width) + extra + (brush or solid())

def upto(size, start, make):
    """Records as long as there is room."""
    out, left, i = list(start), size - sum(map(len, start)) - 300, 0
    while True:
        r = make(i)
        if isinstance(r, bytes): r = [r]
        n = sum(map(len, r))
        if n > left: return out
        out += r; left -= n; i += 1

def region(rects):
    xs = rects or [(0, 0, 0, 0)]
    data = b''.join(dw(*r) for r in rects)
    return dw(32, 1, len(rects), len(data), min(r[0] for r in xs), min(r[1] for r in xs), max(r[2] for r in xs), max(r[3] for r in xs)) + data

R = random.Random(1)
def xy(): return R.randrange(780), R.randrange(1100)
def box(m=100):
    x, y = xy(); return x, y, x + 1 + R.randrange(m), y + 1 + R.randrange(m)
SEL = lambda h: rec(37, dw(h))
def pen_(h, width=1, color=0xFF, style=0): return rec(38, dw(h, style, width, 0, color))
def brush_(h, color=0xFF, style=0, hatch=0): return rec(39, dw(h, style, color, hatch))
def dib(width, height, bits, data, comp=0, colors=()):
    info = dw(40, width, height) + w(1, bits) + dw(comp, len(data), 0, 0, len(colors), 0) + dw(*colors)
    return info, data
def stretch(dst, src, info, bits, rop=0xCC0020):
    x, y, cx, cy = dst; sx, sy, scx, scy = src
    head = dw(0, 0, -1, -1, x, y, sx, sy, scx, scy, 80, len(info), 80 + len(info), len(bits), 0, rop, cx, cy)
    return rec(81, head + info + bits)

FAMILIES = {}


def family(make):
    """A function of the length that gives a metafile of about as many bytes."""
    FAMILIES[make.__name__] = make
    return make


# -- shapes
@family
def shapes_rects(n): return emf(upto(n, [], lambda i: rec(43, dw(*box()))))
@family
def shapes_alternating(n):
    s = [pen_(1), brush_(2), SEL(1), SEL(2)]
    return emf(upto(n, s, lambda i: [SEL(0x80000007 if i % 2 else 1), rec(43, dw(*box()))]))
@family
def shapes_arcs(n):
    def m(i):
        b = box(400); return rec(45, dw(*b, b[0], b[1], b[2], b[1] + 3))
    return emf(upto(n, [rec(35, f(.7, .7, -.7, .7, 300, 3))], m))
@family
def shapes_roundrect_turned(n):
    return emf(upto(n, [rec(35, f(.7, .7, -.7, .7, 300, 3)), brush_(2), SEL(2)], lambda i: rec(44, dw(*box(), 9, 7))))
@family
def lines_pens(n):
    s = [pen_(1), pen_(2, 3, 0xFF00), SEL(1)]
    return emf(upto(n, s, lambda i: [SEL(1 + i % 2), rec(54, dw(*xy()))]))
@family
def lines_one(n): return emf(upto(n, [], lambda i: rec(54, dw(*xy()))))
@family
def lines_separate(n): return emf(upto(n, [], lambda i: [rec(27, dw(*xy())), rec(54, dw(*xy()))]))
@family
def polyline16_big(n):
    c = (n - 400) // 4
    return emf([rec(87, dw(0, 0, 0, 0, c) + b''.join(w(*xy()) for _ in range(c)))])
@family
def polybezier16_big(n):
    c = (n - 400) // 4 // 3 * 3 + 1
    return emf([rec(85, dw(0, 0, 0, 0, c) + b''.join(w(*xy()) for _ in range(c)))])
@family
def polypolygon_empty(n):
    c = (n - 400) // 4
    return emf([rec(8, dw(0, 0, 0, 0, c, 0) + b'\0' * (4 * c))])
@family
def polypolygon_pairs(n):
    c = (n - 400) // 12
    return emf([rec(91, dw(0, 0, 0, 0, c, 2 * c) + dw(2) * c + b''.join(w(*xy(), *xy()) for _ in range(c)))])
@family
def polydraw_closes(n):
    c = (n - 400) // 5
    return emf([rec(92, dw(0, 0, 0, 0, c) + b''.join(w(*xy()) for _ in range(c)) + b'\3' * c)])
@family
def longdash_pen(n):
    c = n // 8
    body = dw(1, 0, 0, 0, 0, 0x10007, 1, 0, 0xFF, 0, c) + dw(*[1 + R.randrange(9) for _ in range(c)])
    s = [rec(95, body), pen_(2), SEL(1)]
    return emf(upto(n, s, lambda i: [SEL(1 + i % 2), rec(27, dw(*xy())), rec(54, dw(*xy()))]))
@family
def dashes16(n):
    body = lambda c: dw(1, 0, 0, 0, 0, 0x10007, 1, 0, c, 0, 16) + dw(*[1 + R.randrange(999) for _ in range(16)])
    s = [rec(95, body(255)), pen_(2), SEL(1)]
    return emf(upto(n, s, lambda i: [SEL(1 + i % 2), rec(54, dw(*xy()))]))
@family
def world_each(n):
    s = [pen_(1, 5), SEL(1)]
    return emf(upto(n, s, lambda i: [rec(35, f(R.random(), R.random(), R.random(), 1, 3, 4)), rec(42, dw(*box()))]))
# -- pixels
@family
def pixels_grid(n): return emf(upto(n, [], lambda i: rec(15, dw(i % 700, i // 700, R.randrange(1 << 24)))))
@family
def pixels_scattered(n): return emf(upto(n, [], lambda i: rec(15, dw(*xy(), R.randrange(1 << 24)))))
@family
def pixels_rects_colors(n):
    return emf(upto(n, [], lambda i: [brush_(1, R.randrange(1 << 24)), SEL(1), rec(40, dw(1)), rec(43, dw(*box(3)))]))
# -- clips
@family
def clip_exclude(n): return emf(upto(n, [], lambda i: [rec(29, dw(*box(3))), rec(43, dw(*box()))]))
@family
def clip_exclude_only(n): return emf(upto(n, [], lambda i: rec(29, dw(*box(3)))))
def bars(k, d=3, vertical=False):
    return [(d * i, 0, d * i + 1, 1100) if vertical else (0, d * i, 780, d * i + 1) for i in range(k)]
@family
def clip_crossing(n):
    def m(i):
        r = region(bars(200, 3, i % 2 == 0)); return [rec(75, dw(len(r), 3) + r), rec(43, dw(*box()))]
    return emf(upto(n, [], m))
@family
def clip_saved_bars(n):
    a = region(bars(250, 3)); b = region(bars(250, 3, True))
    s = [rec(75, dw(len(a), 5) + a), rec(75, dw(len(b), 3) + b)]
    return emf(upto(n, s, lambda i: [rec(33), rec(30, dw(*box())), rec(43, dw(*box())), rec(34, dw(-1))]))
def pathrec(pts, close=True):
    p = rec(86, dw(0, 0, 0, 0, len(pts)) + b''.join(w(*q) for q in pts))
    return [rec(59), p, rec(60)]
@family
def clip_paths_chain(n):
    return emf(upto(n, [], lambda i: pathrec([xy(), xy(), xy()]) + [rec(67, dw(1)), rec(43, dw(*box()))]))
@family
def clip_paths_big_chain(n):
    # all contain the middle
    def star(k):
        return [(int(390 + (300 + R.randrange(80)) * math.cos(2 * math.pi * j / k)), int(550 + (300 + R.randrange(80)) * math.sin(2 * math.pi * j / k))) for j in range(k)]
    return emf(upto(n, [], lambda i: pathrec(star(40)) + [rec(67, dw(1)), rec(43, dw(*box()))]))
@family
def clip_paths_copy(n):
    def star(k): return [xy() for j in range(k)]
    return emf(upto(n, [], lambda i: pathrec(star(8)) + [rec(67, dw(5)), rec(43, dw(*box()))]))
@family
def clip_paths_or_saved(n):
    tri = lambda: [(5 + R.randrange(3), 5), (770 + R.randrange(5), 9), (400, 1090 + R.randrange(9))]
    s = upto(n // 2, [], lambda i: pathrec(tri()) + [rec(67, dw(1))])
    return emf(upto(n, s, lambda i: [rec(33)] + pathrec([(1, 1), (2, 9), (3, 1)]) + [rec(67, dw(2)), rec(34, dw(-1))]))
@family
def clip_paths_offset_saved(n):
    tri = lambda: [(5 + R.randrange(3), 5), (770 + R.randrange(5), 9), (400, 1090 + R.randrange(9))]
    s = upto(n // 2, [], lambda i: pathrec(tri()) + [rec(67, dw(1))])
    return emf(upto(n, s, lambda i: [rec(33), rec(26, dw(1, 1)), rec(43, dw(*box())), rec(34, dw(-1))]))
@family
def clip_path_crossing(n):
    pts = [xy() for _ in range(n // 16)]
    s = pathrec(pts) + [rec(33)]
    s = [rec(59), rec(86, dw(0,0,0,0,len(pts)) + b''.join(w(*q) for q in pts)), rec(60), rec(67, dw(5))]
    return emf(upto(n, s, lambda i: [rec(33)] + pathrec([(1, 1), (700, 9), (300, 1100)]) + [rec(67, dw(2)), rec(43, dw(*box())), rec(34, dw(-1))]))
@family
def clip_path_again(n):
    pts = [xy() for _ in range(n // 16)]
    s = [rec(59), rec(86, dw(0,0,0,0,len(pts)) + b''.join(w(*q) for q in pts)), rec(60)]
    return emf(upto(n, s, lambda i: [rec(33), rec(67, dw(5)), rec(43, dw(*box())), rec(34, dw(-1))]))
# -- regions
@family
def region_fill(n):
    c = (n - 500) // 16; r = region([box() for _ in range(c)])
    return emf([brush_(1), rec(71, dw(0, 0, 0, 0, len(r), 1) + r)])
@family
def region_frame(n):
    c = (n - 500) // 16; r = region([box() for _ in range(c)])
    return emf([brush_(1), rec(72, dw(0, 0, 0, 0, len(r), 1, 1, 1) + r)])
@family
def region_frame_small(n):
    def m(i):
        r = region([box() for _ in range(40)]); return rec(72, dw(0, 0, 0, 0, len(r), 1, 1, 1) + r)
    return emf(upto(n, [brush_(1)], m))
@family
def region_invert(n):
    def m(i):
        r = region([box() for _ in range(4)]); return rec(73, dw(0, 0, 0, 0, len(r)) + r)
    return emf(upto(n, [], m))
@family
def region_frame_bars(n):
    k = 500; r = region(bars(k, 2) + bars(k, 2, True))
    return emf(upto(n, [brush_(1)], lambda i: rec(72, dw(0, 0, 0, 0, len(r), 1, 1, 1) + r)))
# -- text
def text(x, y, s, dx=None, opts=0, rcl=(0, 0, 0, 0)):
    b = s.encode('utf-16le'); b += b'\0' * (-len(b) % 4)
    n = len(s); off = 76; dxo = off + len(b) if dx else 0
    body = dw(0, 0, -1, -1, 1) + f(1, 1) + dw(x, y, n, off, opts, *rcl, dxo) + b + (dw(*dx) if dx else b'')
    return rec(84, body)
def font(h, face='Arial', size=-20, esc=0, weight=400):
    lf = dw(size, 0, esc, esc, weight) + bytes([0, 0, 0, 0, 0, 0, 0, 0]) + face.encode('utf-16le')[:62].ljust(64, b'\0')
    return rec(82, dw(h) + lf)
@family
def text_short(n):
    return emf(upto(n, [font(1), SEL(1)], lambda i: text(*xy(), chr(65 + i % 26))))
@family
def text_long_dx(n):
    k = 4000
    return emf(upto(n, [font(1), SEL(1)], lambda i: text(*xy(), ''.join(chr(65 + R.randrange(26)) for _ in range(k)), [R.randrange(30) for _ in range(k)])))
@family
def text_small(n):
    # EMR_SMALLTEXTOUT, 8-bit characters, no bounds
    k = 4000
    def m(i): return rec(108, dw(*xy(), k, 0x300, 1) + f(1, 1) + bytes(R.randrange(33, 127) for _ in range(k)))
    return emf(upto(n, [font(1), SEL(1)], m))
@family
def text_amp(n):
    k = 4000
    def m(i): return rec(108, dw(*xy(), k, 0x300, 1) + f(1, 1) + b'&' * k)
    return emf(upto(n, [font(1), SEL(1)], m))
@family
def text_fonts(n):
    return emf(upto(n, [], lambda i: [font(1, 'F%d' % i), SEL(1), text(*xy(), 'ab'), rec(40, dw(1))]))
@family
def text_turned_opaque(n):
    return emf(upto(n, [font(1, esc=333), SEL(1), rec(18, dw(2))], lambda i: text(*xy(), 'q', opts=6, rcl=box())))
@family
def text_in_path(n):
    return emf(upto(n, [font(1), SEL(1), rec(59)], lambda i: rec(108, dw(*xy(), 1000, 0x300, 1) + f(1, 1) + bytes(R.randrange(33, 127) for _ in range(1000)))) + [rec(60), rec(62, dw(0,0,-1,-1))])
@family
def text_chars_many(n):
    k = 1000
    def m(i): return text(*xy(), ''.join(chr(R.randrange(0x21, 0xD7FF)) for _ in range(k)))
    return emf(upto(n, [font(1, 'DejaVu Sans'), SEL(1)], m))
@family
def text_polytext(n):
    k = 20000
    def m(i):
        s = b''.join(dw(*xy(), 1, 40 + 40 * k, 0, 0, 0, 0, 0, 40 + 40 * k + 4) for _ in range(k))
        return rec(97, dw(0, 0, -1, -1, 1) + f(1, 1) + dw(k) + s + b'A\0\0\0' + dw(9))
    k = min(k, (n - 900) // 40)
    return emf(upto(n, [font(1), SEL(1)], m))
@family
def text_polytext_shared(n):
    # each of the strings is the same long one
    k = (n // 2 - 900) // 40; L = n // 4
    def m():
        off = 40 + 40 * k
        s = b''.join(dw(*xy(), L // 2, off, 0, 0, 0, 0, 0, 0) for _ in range(k))
        return rec(97, dw(0, 0, -1, -1, 1) + f(1, 1) + dw(k) + s + bytes(R.choice(b'abcdefg') if j % 2 == 0 else 0 for j in range(L)))
    return emf([font(1), SEL(1), m()])
# -- bitmaps
@family
def bitmap_rle(n):
    # end of bitmap at once, large sizes
    info, bits = dib(2000, 2000, 8, b'\0\1', 1, [0, 0xFFFFFF])
    return emf(upto(n, [], lambda i: stretch((*xy(), 10, 10), (0, 0, 2000, 2000), dib(2000, 2000, 8, b'\0\1', 1, [i, 0xFFFFFF])[0], b'\0\1')))
@family
def bitmap_rle_runs(n):
    bits = b'\xff\1' * ((n - 2000) // 2) + b'\0\1'
    k = int(((n - 2000) // 2 * 255) ** .5)
    return emf([stretch((0, 0, 700, 700), (0, 0, k, k), *dib(k, k, 8, bits, 1, [0, 0xFFFFFF]))])
@family
def bitmap_tiny(n):
    return emf(upto(n, [], lambda i: stretch((*xy(), 700, 900), (0, 0, 2, 2), *dib(2, 2, 24, bytes(R.randrange(256) for _ in range(16))))))
@family
def bitmap_one_bit(n):
    k = int((n - 1000) ** .5 * 2.8); k -= k % 32
    return emf([stretch((0, 0, 700, 700), (0, 0, k, k), *dib(k, k, 1, R.randbytes(k * k // 8), 0, [0, 0xFFFFFF]))])
@family
def bitmap_1bit_zero(n):
    k = int((n - 1000) ** .5 * 2.8); k -= k % 32
    return emf([stretch((0, 0, 700, 700), (0, 0, k, k), *dib(k, k, 1, bytes(k * k // 8), 0, [0, 0xFFFFFF]))])
@family
def bitmap_24(n):
    k = int(((n - 1000) / 3) ** .5); k -= k % 4
    return emf([stretch((0, 0, 700, 700), (0, 0, k, k), *dib(k, k, 24, R.randbytes(k * k * 3)))])
@family
def bitmap_mixed_over(n):
    # raster operation over another bitmap
    k = int(((n / 2 - 1000) / 3) ** .5); k -= k % 4
    return emf([stretch((0, 0, 700, 700), (0, 0, k, k), *dib(k, k, 24, R.randbytes(k * k * 3))),
                stretch((0, 0, 700, 700), (0, 0, k, k), *dib(k, k, 24, R.randbytes(k * k * 3)), rop=0x660046)])
@family
def bitmap_rops_small(n):
    return emf(upto(n, [stretch((0, 0, 700, 900), (0, 0, 4, 4), *dib(4, 4, 24, R.randbytes(48)))],
       lambda i: stretch((*xy(), 300, 300), (0, 0, 4, 4), *dib(4, 4, 24, R.randbytes(48)), rop=(0x660046, 0x8800C6, 0xEE0086, 0x440328)[i % 4])))
@family
def bitmap_rops_1bit_mask(n):
    return emf(upto(n, [],
       lambda i: stretch((i % 700, i // 700, 30, 30), (0, 0, 8, 8), *dib(8, 8, 1, R.randbytes(32), 0, [0, 0xFFFFFF]), rop=(0x8800C6, 0xEE0086)[i % 2])))
@family
def bitmap_rop_large_over_small(n):
    k = 1000
    big = stretch((0, 0, 1000, 1000), (0, 0, k, k), dib(k, k, 8, b'\0\1', 1, [0x808080, 0xFFFFFF])[0], b'\0\1')
    return emf(upto(n, [big], lambda i: stretch((0, 0, 1000, 1000), (0, 0, 2, 2), *dib(2, 2, 24, R.randbytes(16)), rop=0x660046)))
@family
def patblt_invert(n):
    def blt(x, y, cx, cy, rop): return rec(76, dw(0, 0, -1, -1, x, y, cx, cy, rop, 0, 0) + f(1, 0, 0, 1, 0, 0) + dw(0, 0, 0, 0, 0, 0))
    return emf(upto(n, [], lambda i: blt(*xy(), 50, 50, 0x550009)))
@family
def patblt_patinvert(n):
    def blt(x, y, cx, cy, rop): return rec(76, dw(0, 0, -1, -1, x, y, cx, cy, rop, 0, 0) + f(1, 0, 0, 1, 0, 0) + dw(0, 0, 0, 0, 0, 0))
    return emf(upto(n, [brush_(1, 0x123456), SEL(1)], lambda i: blt(*xy(), 50, 50, 0x5A0049)))
@family
def patblt_invert_big(n):
    def blt(x, y, cx, cy, rop): return rec(76, dw(0, 0, -1, -1, x, y, cx, cy, rop, 0, 0) + f(1, 0, 0, 1, 0, 0) + dw(0, 0, 0, 0, 0, 0))
    return emf(upto(n, [brush_(1, 0x123456), SEL(1)], lambda i: blt(i % 97, i % 89, 700, 900, 0x5A0049)))
@family
def rop2_not_shapes(n):
    return emf(upto(n, [rec(20, dw(6))], lambda i: rec(43, dw(*box()))))
@family
def rop2_xor_over(n):
    s = upto(n // 2, [brush_(1, 0x445566), SEL(1)], lambda i: rec(43, dw(*box())))
    return emf(upto(n, s + [rec(20, dw(7))], lambda i: rec(43, dw(*box(600)))))
@family
def rop2_xor_twice(n):
    b = [box(600) for _ in range(n)]
    s = upto(n // 2, [brush_(1, 0x445566), SEL(1), rec(20, dw(7))], lambda i: rec(43, dw(*b[i])))
    k = len(s) - 3
    return emf(upto(n, s, lambda i: rec(43, dw(*b[i % k]))))
@family
def rop2_lines_not(n):
    return emf(upto(n, [rec(20, dw(6))], lambda i: [rec(27, dw(*xy())), rec(54, dw(*xy()))]))
@family
def plgblt(n):
    def m(i):
        info, bits = dib(2, 2, 24, R.randbytes(16))
        pts = dw(*xy(), *xy(), *xy())
        head = dw(0, 0, -1, -1) + pts + dw(0, 0, 2, 2) + f(1, 0, 0, 1, 0, 0) + dw(0, 0, 140, len(info), 140 + len(info), len(bits), 0, 0, 0, 0, 0, 0, 0)
        return rec(79, head + info + bits)
    return emf(upto(n, [], m))
@family
def maskblt(n):
    def m(i):
        info, bits = dib(2, 2, 24, R.randbytes(16)); mi, mb = dib(8, 8, 1, R.randbytes(32), 0, [0, 0xFFFFFF])
        o = 128
        head = dw(0, 0, -1, -1, *xy(), 300, 300, 0xAACC0020, 0, 0) + f(1, 0, 0, 1, 0, 0) + dw(0, 0, o, len(info), o + len(info), len(bits), 0, 0, 0, o + len(info) + len(bits), len(mi), o + len(info) + len(bits) + len(mi), len(mb))
        return rec(78, head + info + bits + mi + mb)
    return emf(upto(n, [], m))
@family
def alphablend(n):
    def m(i):
        info, bits = dib(2, 2, 32, R.randbytes(16))
        head = dw(0, 0, -1, -1, *xy(), 300, 300, 0x01FF0000, 0, 0) + f(1, 0, 0, 1, 0, 0) + dw(0, 0, 108, len(info), 108 + len(info), len(bits), 2, 2)
        return rec(114, head + info + bits)
    return emf(upto(n, [], m))
@family
def transparentblt(n):
    def m(i):
        info, bits = dib(2, 2, 32, R.randbytes(16))
        head = dw(0, 0, -1, -1, *xy(), 300, 300, 0, 0, 0) + f(1, 0, 0, 1, 0, 0) + dw(0, 0, 108, len(info), 108 + len(info), len(bits), 2, 2)
        return rec(116, head + info + bits)
    return emf(upto(n, [], m))
@family
def bitmap_one_bit_rop(n):
    k = int((n - 1000) ** .5 * 2.8); k -= k % 32
    ground = rec(43, dw(1, 1, 300, 300))
    return emf([ground, stretch((0, 0, 700, 700), (0, 0, k, k), *dib(k, k, 1, R.randbytes(k * k // 8), 0, [0x808080, 0x123456]), rop=0x660046)])
@family
def bitmap_rle_rop(n):
    return emf(upto(n, [], lambda i: stretch((*xy(), 10, 10), (0, 0, 4000, 4000), dib(4000, 4000, 8, b'\0\1', 1, [i, 0xFFFFFF])[0], b'\0\1', rop=0x660046)))
@family
def bitmap_rle_runs_rop(n):
    bits = b'\xff\1' * ((n - 2000) // 2) + b'\0\1'
    k = int(((n - 2000) // 2 * 255) ** .5)
    k = min(k, 4000)
    return emf([stretch((0, 0, 700, 700), (0, 0, k, k), *dib(k, k, 8, bits, 1, [0x808080, 0x123456]), rop=0x660046)])
@family
def bitmap_one_hash(n):
    # lines of two blocks of four words: two high bits further on take back that of a word
    def m(i):
        lines = bytearray(4 * 68)
        for bit in range(16):
            if i >> bit & 1:
                word = bit // 4 * 68 + bit % 4 * 8
                for place in (7, 35, 39):
                    lines[word + place] ^= 0x80
        info, bits = dib(22, 4, 24, bytes(lines))
        return stretch((i % 700, i // 700 % 1000, 22, 4), (0, 0, 22, 4), info, bits)
    return emf(upto(n, [], m))

@family
def bitmap_mask_pairs(n):
    k = 512
    bits = bytes(k * k // 8)
    def one(i, rop): return stretch((i % 50, 7, 700, 700), (0, 0, k, k), *dib(k, k, 1, bits, 0, [0, 0xFFFFFF]), rop=rop)
    return emf(upto(n, [], lambda i: [one(i, 0x8800C6), one(i, 0xEE0086)]))
@family
def image_same_pixels(n):
    k = 256
    return emf(upto(n, [], lambda i: stretch((i % 50, i % 60, 300, 300), (0, 0, k, k), *dib(k, k, 8, b'\0\1', 1, [i, 0xFFFFFF]))))
# -- patterns
def patbrush(h, info, bits): return rec(94, dw(h, 0, 32, len(info), 32 + len(info), len(bits)) + info + bits)
@family
def brush_patterns(n):
    return emf(upto(n, [], lambda i: [patbrush(1, *dib(8, 8, 24, R.randbytes(192))), SEL(1), rec(43, dw(*box())), rec(40, dw(1))]))
@family
def brush_pattern_origin(n):
    return emf(upto(n, [patbrush(1, *dib(8, 8, 24, R.randbytes(192))), SEL(1)], lambda i: [rec(13, dw(*xy())), rec(43, dw(*box()))]))
@family
def brush_pattern_large_rle(n):
    info = dib(2000, 2000, 8, b'\0\1', 1, [0, 0xFFFFFF])[0]
    return emf(upto(n, [], lambda i: [patbrush(1, dib(2000, 2000, 8, b'\0\1', 1, [i, 0xFFFFFF])[0], b'\0\1'), SEL(1), rec(43, dw(*box())), rec(40, dw(1))]))
@family
def brush_pattern_rop(n):
    def blt(x, y, cx, cy, rop): return rec(76, dw(0, 0, -1, -1, x, y, cx, cy, rop, 0, 0) + f(1, 0, 0, 1, 0, 0) + dw(0, 0, 0, 0, 0, 0))
    s = [stretch((0, 0, 780, 1100), (0, 0, 100, 100), *dib(100, 100, 24, R.randbytes(30000))), patbrush(1, *dib(8, 8, 24, R.randbytes(192))), SEL(1)]
    return emf(upto(n, s, lambda i: blt(*xy(), 300, 300, (0x5A0049, 0xA000C9)[i % 2])))
@family
def mono_pattern_colors(n):
    m = rec(93, dw(1, 0, 32, 48, 80, 32) + dib(8, 8, 1, R.randbytes(32), 0, [0, 0xFFFFFF])[0] + R.randbytes(32))
    return emf(upto(n, [m, SEL(1)], lambda i: [rec(25, dw(i)), rec(43, dw(*box(3)))]))
@family
def mono_pattern_big_colors(n):
    k = int((n / 2 * 8) ** .5); k -= k % 32
    info, bits = dib(k, k, 1, R.randbytes(k * k // 8), 0, [0, 0xFFFFFF])
    m = rec(93, dw(1, 0, 32, len(info), 32 + len(info), len(bits)) + info + bits)
    return emf(upto(n, [m, SEL(1)], lambda i: [rec(25, dw(i)), rec(43, dw(*box(3)))]))
@family
def hatches_colors(n):
    return emf(upto(n, [], lambda i: [brush_(1, i, 2, i % 6), SEL(1), rec(43, dw(*box(3))), rec(40, dw(1))]))
@family
def hatch_backgrounds(n):
    return emf(upto(n, [brush_(1, 7, 2, 4), SEL(1)], lambda i: [rec(25, dw(i)), rec(43, dw(*box(3)))]))
@family
def pattern_pen_lines(n):
    body = lambda h, info, bits: dw(h, 52, len(info), 52 + len(info), len(bits), 0x10000, 9, 3, 0, 0, 0) + info + bits
    return emf(upto(n, [rec(95, body(1, *dib(8, 8, 24, R.randbytes(192)))), SEL(1)], lambda i: [rec(27, dw(*xy())), rec(54, dw(*xy()))]))
# -- gradients
def vert(x, y): return dw(x, y) + w(*[R.randrange(65536) for _ in range(3)], 0)
@family
def gradient_rects(n):
    def m(i): return rec(118, dw(0, 0, -1, -1, 2, 1, 0) + vert(*xy()) + vert(*xy()) + dw(0, 1))
    return emf(upto(n, [], m))
@family
def gradient_rects_indices(n):
    c = (n - 600) // 8
    return emf([rec(118, dw(0, 0, -1, -1, 2, c, 0) + vert(3, 3) + vert(700, 1000) + dw(0, 1) * c)])
@family
def gradient_triangles_small_spread(n):
    def m(i):
        v = [(1, 1), (3, 1), (1, 3), (770, 1090), (772, 1090), (770, 1093)]
        return rec(118, dw(0, 0, -1, -1, 6, 2, 2) + b''.join(vert(*p) for p in v) + dw(0, 1, 2, 3, 4, 5))
    return emf(upto(n, [], m))
@family
def gradient_triangles(n):
    def m(i): return rec(118, dw(0, 0, -1, -1, 3, 1, 2) + vert(*xy()) + vert(*xy()) + vert(*xy()) + dw(0, 1, 2))
    return emf(upto(n, [], m))
@family
def gradient_triangle_indices(n):
    c = (n - 600) // 12
    return emf([rec(118, dw(0, 0, -1, -1, 3, c, 2) + vert(3, 3) + vert(700, 1000) + vert(4, 900) + dw(0, 1, 2) * c)])
@family
def gradient_triangles_tiny(n):
    c = (n - 600) // 60
    def t():
        x, y = xy(); return vert(x, y) + vert(x + 2, y) + vert(x, y + 2)
    return emf([rec(118, dw(0, 0, -1, -1, 3 * c, c, 2) + b''.join(t() for _ in range(c)) + dw(*range(3 * c)))])
@family
def gradient_triangles_two_colors(n):
    c = (n - 600) // 12
    v = [vert(*xy()) for _ in range(2000)]
    return emf([rec(118, dw(0, 0, -1, -1, 2000, c - 4000, 2) + b''.join(v) + dw(*[R.randrange(2000) for _ in range(3 * (c - 4000))]))])
# -- paths
@family
def path_again_stroke(n):
    pts = [xy() for _ in range(n // 8)]
    s = [rec(59), rec(87, dw(0,0,0,0,len(pts)) + b''.join(w(*q) for q in pts)), rec(60)]
    return emf(upto(n, s, lambda i: [rec(33), rec(64, dw(0, 0, -1, -1)), rec(34, dw(-1))]))
@family
def path_widen(n):
    pts = [xy() for _ in range((n - 600) // 4)]
    body = dw(1, 0, 0, 0, 0, 0x10000, 9, 0, 0xFF, 0, 0)
    return emf([rec(95, body), SEL(1), rec(59), rec(88, dw(0,0,0,0,len(pts) // 3 * 3) + b''.join(w(*q) for q in pts)), rec(60), rec(66), rec(62, dw(0,0,-1,-1))])
@family
def path_widen_each(n):
    body = dw(1, 0, 0, 0, 0, 0x10000, 99, 0, 0xFF, 0, 0)
    return emf(upto(n, [rec(95, body), SEL(1)], lambda i: [rec(59), rec(88, dw(0,0,0,0,3) + w(*xy(),*xy(),*xy())), rec(60), rec(66), rec(62, dw(0,0,-1,-1))]))
@family
def path_widen_restored(n):
    body = dw(1, 0, 0, 0, 0, 0x10000, 99, 0, 0xFF, 0, 0)
    s = [rec(95, body), SEL(1), rec(59), rec(88, dw(0,0,0,0,3) + w(*xy(),*xy(),*xy())), rec(60)]
    return emf(upto(n, s, lambda i: [rec(33), rec(66), rec(62, dw(0,0,-1,-1)), rec(34, dw(-1))]))
@family
def path_flatten_repeated(n):
    pts = [xy() for _ in range(n // 8)]
    s = [rec(59), rec(88, dw(0,0,0,0,len(pts) // 3 * 3) + b''.join(w(*q) for q in pts)), rec(60)]
    return emf(upto(n, s, lambda i: [rec(65)]))
@family
def anglearc(n):
    return emf(upto(n, [], lambda i: rec(41, dw(*xy(), 300) + f(0, 359 + i * 1e4))))
@family
def huge_coordinates(n):
    return emf(upto(n, [rec(17, dw(8)), rec(9, dw(3, 3)), rec(11, dw(1 << 30, 1 << 30)), pen_(1, 100), SEL(1)], lambda i: [rec(27, dw(R.randrange(1 << 31), R.randrange(1 << 31))), rec(54, dw(-R.randrange(1 << 31), -R.randrange(1 << 31)))]))
@family
def huge_beziers_dashed(n):
    body = dw(1, 0, 0, 0, 0, 0x10001, 1, 0, 0xFF, 0, 0)
    def m(i): return rec(2, dw(0, 0, -1, -1, 4) + dw(*[R.randrange(-(1 << 30), 1 << 30) for _ in range(8)]))
    return emf(upto(n, [rec(95, body), SEL(1)], m))
# -- floods
def flood(x, y, c, mode): return rec(53, dw(x, y, c, mode))
@family
def floods_after_shapes(n):
    s = upto(n // 2, [brush_(1), SEL(1)], lambda i: rec(43, dw(*box())))
    return emf(upto(n, s, lambda i: flood(*xy(), 0, 0)))
@family
def floods_after_lines(n):
    s = upto(n // 2, [brush_(1), SEL(1)], lambda i: rec(54, dw(*xy())))
    return emf(upto(n, s, lambda i: [flood(*xy(), 0, 0), rec(54, dw(*xy()))]))
@family
def floods_few_lines_between(n):
    s = upto(n * 9 // 10, [brush_(1), SEL(1)], lambda i: [rec(27, dw(*xy())), rec(54, dw(*xy()))])
    return emf(upto(n, s, lambda i: [flood(*xy(), 0, 0), rec(43, dw(*box()))]))
@family
def floods_inversions(n):
    s = upto(n // 2, [brush_(1), SEL(1), rec(20, dw(7))], lambda i: rec(43, dw(*box())))
    return emf(upto(n, s, lambda i: [flood(*xy(), 0, 0), rec(43, dw(*box()))]))
# -- state
@family
def saves(n): return emf(upto(n, [], lambda i: rec(33)))
@family
def saves_restores(n):
    s = [rec(33)] * 1000
    return emf(upto(n, s, lambda i: [rec(33), rec(34, dw(-1))]))
@family
def saves_big_dash(n):
    c = n // 8
    body = dw(1, 0, 0, 0, 0, 0x10007, 1, 0, 0xFF, 0, c) + dw(*[1 + R.randrange(9) for _ in range(c)])
    s = [rec(95, body), SEL(1)] + [rec(33)] * 1000
    return emf(upto(n, s, lambda i: [rec(33), rec(34, dw(-1))]))
@family
def saves_big_palette(n):
    c = min(n // 8, 65535)
    s = [rec(49, dw(1) + w(0x300, c) + dw(*[R.randrange(1 << 24) for _ in range(c)])), rec(48, dw(1))] + [rec(33)] * 999
    return emf(upto(n, s, lambda i: [rec(33), rec(51, dw(1, 200 + i % 9)), rec(34, dw(-1))]))
@family
def palette_resize(n):
    s = [rec(49, dw(1) + w(0x300, 1) + dw(5)), rec(48, dw(1))]
    return emf(upto(n, s, lambda i: [rec(51, dw(1, 65535 if i % 2 else 1))]), )
@family
def palettes_many(n):
    return emf(upto(n, [], lambda i: [rec(49, dw(1 + i % 60000) + w(0x300, 1) + dw(5)), rec(51, dw(1 + i % 60000, 65535))]), handles=65535)
@family
def objects(n): return emf(upto(n, [], lambda i: brush_(1 + i % 60000, i)), handles=65535)
@family
def handles_only(n): return emf([rec(43, dw(1, 1, 9, 9))], handles=65535)
@family
def groups(n):
    return emf(upto(n, [], lambda i: [rec(70, dw(32) + b'GDIC' + dw(2, 0, 0, 0, 0, 1) + b'&\0\0\0'), rec(43, dw(*box())), rec(70, dw(8) + b'GDIC' + dw(3))]))
@family
def groups_deep(n):
    return emf(upto(n, [], lambda i: [rec(70, dw(32) + b'GDIC' + dw(2, 0, 0, 0, 0, 1) + b'&\0\0\0')]))
@family
def description(n):
    d = ('&' * (n // 2 - 200)).encode('utf-16le')
    body = emf([rec(43, dw(1, 1, 50, 50))])
    b = bytearray(body[:88]); rest = body[88:]
    ln = len(d) // 2
    head = bytearray(b + d + b'\0' * (-len(d) % 4))
    struct.pack_into('<I', head, 4, len(head)); struct.pack_into('<II', head, 60, ln, 88)
    struct.pack_into('<I', head, 48, len(head) + len(rest))
    return bytes(head) + rest
@family
def unknown_types(n): return emf(upto(n, [], lambda i: dw(200 + i % 1000, 8)))
# -- recovery
@family
def garbage(n): return emf([rec(43, dw(1, 1, 99, 99))]) + R.randbytes(n - 400)
@family
def garbage_inside(n): return emf([rec(43, dw(1, 1, 99, 99)), R.randbytes((n - 800) // 4 * 4), rec(43, dw(3, 3, 70, 70))])
@family
def bad_sizes(n): return emf(upto(n, [], lambda i: dw(43, 0x7FFFFFF0, *box())))
@family
def bad_sizes_small(n): return emf(upto(n, [], lambda i: dw(43, 9, *box())))
@family
def bad_chain(n): return emf(upto(n, [], lambda i: dw(43, 24, 1, 1) + dw(43, 24, 1, 1, 9, 9) + dw(3, 0x11111111)))
@family
def bad_pairs(n): return emf(upto(n, [], lambda i: rec(43, dw(*box())) + rec(43, dw(*box())) + b'\1\2\3\4'))
@family
def ends(n): return emf(upto(n, [], lambda i: dw(14, 20, 0, 16, 20)))
@family
def ends_and_rects(n): return emf(upto(n, [], lambda i: [dw(14, 20, 0, 16, 20), rec(43, dw(*box()))]))
# -- EMF+
@family
def plus_rects(n): return plusfile(upto(n, [], lambda i: plus(0x400A, 0xC000, dw(0xFF102030 + i % 9, 1) + w(*box()))))
@family
def plus_clear(n): return plusfile(upto(n, [], lambda i: plus(0x4009, 0, dw(0xFF000000 + i))))
@family
def plus_clip_rects(n): return plusfile(upto(n, [], lambda i: [plus(0x4032, 0x100, f(*[float(v) for v in box(700)])), plus(0x400A, 0xC000, dw(0xFF102030 + i % 9, 1) + w(*box()))]))
@family
def plus_clip_xor(n): return plusfile(upto(n, [], lambda i: [plus(0x4032, 0x300, f(*[float(v) for v in box(700)])), plus(0x400A, 0xC000, dw(0xFF102030 + i % 9, 1) + w(*box()))]))
@family
def plus_clip_path_and(n):
    s = [pobj(PATH, 0, ppath([tuple(map(float, xy())) for _ in range(100)])), pobj(PATH, 1, ppath([tuple(map(float, xy())) for _ in range(100)]))]
    return plusfile(upto(n, s, lambda i: [plus(0x4033, 0x100 | i % 2), plus(0x4031, 0), plus(0x4033, 0x100 | (i + 1) % 2), plus(0x402D, 0, f(i % 7, 1)), plus(0x400A, 0xC000, dw(0xFF102030 + i % 9, 1) + w(*box()))]))
@family
def plus_clip_path_or(n):
    s = [pobj(PATH, j, ppath([tuple(map(float, xy())) for _ in range(100)])) for j in range(2)]
    return plusfile(upto(n, s, lambda i: [plus(0x4033, 0x200 | i % 2), plus(0x402D, 0, f(i % 7, 1)), plus(0x400A, 0xC000, dw(0xFF102030 + i % 9, 1) + w(*box()))]))
@family
def plus_clip_chain_offset(n):
    s = upto(n // 2, [], lambda i: [plus(0x4032, 0x100, f(*[float(v) for v in (i % 7, i % 5, 700 + i % 3, 1000)]))])
    return plusfile(upto(n, s, lambda i: [plus(0x4025, 0, dw(1)), plus(0x4035, 0, f(1, 1)), plus(0x4026, 0, dw(1))]))
@family
def plus_clip_chain_or(n):
    s = upto(n // 2, [], lambda i: [plus(0x4032, 0x100, f(*[float(v) for v in (i % 7, i % 5, 700 + i % 3, 1000)]))])
    return plusfile(upto(n, s, lambda i: [plus(0x4025, 0, dw(1)), plus(0x4032, 0x200, f(1, 1, 5, 5)), plus(0x4026, 0, dw(1))]))
def regnode(t, a=b'', b=b''): return dw(t) + a + b
@family
def plus_region_deep(n):
    k = min((n - 900) // 28, 30000)
    leaf = dw(0x10000000) + f(1, 1, 700, 900)
    body = (dw(2) + leaf) * k + leaf
    return plusfile([pobj(REGION, 0, dw(PV, k * 2) + body), plus(0x4013, 0x8000, dw(0xFF0000FF))])
@family
def plus_region_xor(n):
    k = (n - 900) // 24
    body = b''.join(dw(3) + dw(0x10000000) + f(*[float(v) for v in box(700)]) for _ in range(k)) + dw(0x10000002)
    return plusfile([pobj(REGION, 0, dw(PV, k * 2) + body), plus(0x4013, 0x8000, dw(0xFF0000FF))])
@family
def plus_region_path(n):
    k = n // 10
    p = ppath([tuple(map(float, xy())) for _ in range(k)]); p += b'\0' * (-len(p) % 4)
    body = dw(0x10000001, len(p)) + p
    s = [pobj(REGION, 0, dw(PV, 0) + body)]
    return plusfile(upto(n, s, lambda i: plus(0x4013, 0x8000, dw(0xFF0000FF + i))))
@family
def plus_path_fill_again(n):
    s = [pobj(PATH, 0, ppath([tuple(map(float, xy())) for _ in range(n // 18)]))]
    return plusfile(upto(n, s, lambda i: plus(0x4014, 0x8000, dw(0xFF0000FF + i))))
@family
def plus_path_draw_again(n):
    s = [pobj(PATH, 0, ppath([tuple(map(float, xy())) for _ in range(n // 18)])), pobj(PEN, 1, pen())]
    return plusfile(upto(n, s, lambda i: plus(0x4015, 0, dw(1))))
@family
def plus_path_runs(n):
    # relative points, runs of types: 2 bytes a point
    k = n - 2000; k //= 2
    data = dw(PV, k, 0x1800) + bytes(R.randrange(0, 128) for _ in range(2 * k))
    t = b''
    r = k
    while r > 0:
        m = min(r, 63); t += bytes([0x40 | m, 1]); r -= m
    return plusfile([pobj(PATH, 0, data + t), plus(0x4014, 0x8000, dw(0xFF0000FF))])
def stops(k): return dw(k) + f(*[j / (k - 1) for j in range(k)]) + dw(*[0xFF000000 | R.randrange(1 << 24) for _ in range(k)])
def lingrad(k, flags=4, extra=b''):
    return dw(PV, 4, flags, 0) + f(0, 0, 300, 300) + dw(0xFF0000FF, 0xFFFF0000, 0, 0) + extra + (stops(k) if flags & 4 else b'')
@family
def plus_gradient_stops_moved(n):
    s = [pobj(BRUSH, 0, lingrad(n // 16))]
    return plusfile(upto(n, s, lambda i: [plus(0x402D, 0, f(1, 1)), plus(0x400A, 0x4000, dw(0, 1) + w(*box()))]))
@family
def plus_gradient_sigma(n):
    return plusfile(upto(n, [], lambda i: [pobj(BRUSH, 0, lingrad(2)), plus(0x400A, 0x4000, dw(0, 1) + w(*box()))]))
def pathgrad(pts, colors, flags=0, wrap=4, extra=b''):
    return dw(PV, 3, flags, wrap, 0xFFFFFFFF) + f(390, 500) + dw(len(colors), *colors) + dw(len(pts)) + b''.join(f(*p) for p in pts) + extra
def fxy(): return tuple(map(float, xy()))
@family
def plus_pathgradient_many_colors(n):
    k = n // 14
    pts = [fxy() for _ in range(k)]
    return plusfile([pobj(BRUSH, 0, pathgrad(pts, [0xFF000000 | R.randrange(1 << 24) for _ in range(k)])), plus(0x400A, 0x4000, dw(0, 1) + w(0, 0, 700, 1000))])
@family
def plus_pathgradient_each(n):
    return plusfile(upto(n, [], lambda i: [pobj(BRUSH, 0, pathgrad([fxy(), fxy(), fxy(), fxy()], [0xFF000000 | R.randrange(1 << 24) for _ in range(4)])), plus(0x400A, 0x4000, dw(0, 1) + w(*box(500)))]))
@family
def plus_pathgradient_reuse(n):
    s = [pobj(BRUSH, 0, pathgrad([fxy(), fxy(), fxy(), fxy()], [0xFF000000 | R.randrange(1 << 24) for _ in range(4)]))]
    return plusfile(upto(n, s, lambda i: [plus(0x400A, 0x4000, dw(0, 1) + w(*box(500)))]))
@family
def plus_pathgradient_tiled(n):
    s = [pobj(BRUSH, 0, pathgrad([(1., 1.), (9., 2.), (5., 8.)], [0xFF000000 | R.randrange(1 << 24) for _ in range(3)], wrap=0))]
    return plusfile(upto(n, s, lambda i: [plus(0x402D, 0, f(.1, 0)), plus(0x400A, 0x4000, dw(0, 1) + w(0, 0, 700, 1000))]))
def circle_gradient(radius, k):
    c = .5522848 * radius
    ring = [(radius, 0), (radius, c), (c, radius), (0, radius), (-c, radius), (-radius, c), (-radius, 0), (-radius, -c), (-c, -radius), (0, -radius), (c, -radius), (radius, -c), (radius, 0)]
    outline = ppath([(5. + x, 5. + y) for x, y in ring], [0] + [3] * 11 + [0x83])
    return dw(PV, 3, 1 | 4, 0, 0xFFFFFFFF) + f(5, 5) + dw(1, 0xFF0000FF) + dw(len(outline)) + outline + stops(k)
@family
def plus_pathgradient_circle_tiled(n):
    s = [pobj(BRUSH, 0, circle_gradient(4, n // 16))]
    return plusfile(upto(n, s, lambda i: [plus(0x402D, 0, f(.1, 0)), plus(0x400A, 0x4000, dw(0, 1) + w(0, 0, 700, 1000))]))
@family
def plus_pathgradient_one_place_tiled(n):
    k = min(n // 16, 4000)
    s = [pobj(BRUSH, 0, pathgrad([(1., 1.), (9., 2.)] + [(5., 8.)] * k, [0xFF000000 | R.randrange(1 << 24) for _ in range(3)], wrap=0))]
    return plusfile(upto(n, s, lambda i: [plus(0x402D, 0, f(.1, 0)), plus(0x400A, 0x4000, dw(0, 1) + w(0, 0, 700, 1000))]))
@family
def plus_pathgradient_stops(n):
    k = n // 16
    s = [pobj(BRUSH, 0, pathgrad([(1., 1.), (700., 2.), (500., 800.)], [0xFF000000 | R.randrange(1 << 24) for _ in range(3)], flags=4, extra=stops(k)))]
    return plusfile(upto(n, s, lambda i: [plus(0x402D, 0, f(.1, 0)), plus(0x400A, 0x4000, dw(0, 1) + w(0, 0, 700, 1000))]))
@family
def plus_pathgradient_big_used_again(n):
    k = n // 16
    s = [pobj(BRUSH, 0, pathgrad([fxy() for _ in range(k)], [0xFF0000FF], flags=0))]
    return plusfile(upto(n, s, lambda i: [plus(0x400A, 0x4000, dw(0, 1) + w(*box(500)))]))
@family
def plus_pen_dashes(n):
    k = n // 8
    s = [pobj(PEN, 0, pen(0x100, 1.0, dw(k) + f(*[.1 + R.random() for _ in range(k)]))), pobj(PEN, 1, pen(0, 1.0, brush=solid(0xFFFF0000)))]
    return plusfile(upto(n, s, lambda i: plus(0x400D, 0x4000 | i % 2, dw(2) + w(*xy(), *xy()))))
@family
def plus_pen_dash_tiny(n):
    s = [pobj(PEN, 0, pen(0x100 | 0x40 | 2, 1.0, dw(0x13) + dw(3) + dw(2) + f(.001, .001)))]
    return plusfile(upto(n, s, lambda i: plus(0x400D, 0x4000, dw(2) + w(*xy(), *xy()))))
@family
def plus_pen_dashed_stripes(n):
    k, m = n // 16, n // 16 // 2 * 2
    dashes = dw(k) + f(*[.1 + R.random() for _ in range(k)])
    s = [pobj(PEN, 0, pen(0x100 | 0x400, 300.0, dashes + dw(m) + f(*sorted(R.random() for _ in range(m)))))]
    return plusfile(upto(n, s, lambda i: plus(0x400D, 0x4000, dw(2) + w(*xy(), *xy()))))
@family
def plus_pen_dashes_many_figures(n):
    k = n // 24
    pts = [fxy() for _ in range(2 * k)]
    dashes = dw(k) + f(*[.1 + 1000 * R.random() for _ in range(k)])
    s = [pobj(PEN, 0, pen(0x40 | 0x100, 3.0, dw(2) + dashes)), pobj(PATH, 1, ppath(pts, [0, 1] * k))]
    return plusfile(s + [plus(0x4015, 1, dw(0))])
@family
def plus_pen_stripes(n):
    k = n // 8 // 2 * 2
    e = sorted(R.random() for _ in range(k))
    s = [pobj(PEN, 0, pen(0x400, 300.0, dw(k) + f(*e)))]
    return plusfile(upto(n, s, lambda i: plus(0x400D, 0x4000, dw(2) + w(*xy(), *xy()))))
@family
def plus_pen_stripes_long(n):
    k = n // 16 // 2 * 2
    e = sorted(R.random() for _ in range(k))
    m = n // 16
    return plusfile([pobj(PEN, 0, pen(0x400, 30.0, dw(k) + f(*e))), plus(0x400D, 0x4000, dw(m) + b''.join(w(*xy()) for _ in range(m)))])
def capdata(k):
    p = ppath([(R.random() * 5, R.random() * 5) for _ in range(k)]); p += b'\0' * (-len(p) % 4)
    return dw(PV, 0, 1, 0) + f(0) + dw(0, 0, 0) + f(10, 1, 0, 0, 0, 0) + dw(len(p)) + p
@family
def plus_pen_caps(n):
    c = capdata(n // 24)
    s = [pobj(PEN, 0, pen(0x1000, 4.0, dw(len(c)) + c))]
    return plusfile(upto(n, s, lambda i: plus(0x400D, 0x4000, dw(2) + w(*xy(), *xy()))))
@family
def plus_pen_caps_arrow(n):
    c = dw(PV, 1) + f(3, 3, 0) + dw(1, 0, 0, 0) + f(10, 1, 0, 0, 0, 0)
    s = [pobj(PEN, 0, pen(0x1800, 4.0, dw(len(c)) + c + dw(len(c)) + c))]
    return plusfile(upto(n, s, lambda i: plus(0x400D, 0x4000, dw(2) + w(*xy(), *xy()))))
@family
def plus_pen_inset_curves(n):
    s = [pobj(PEN, 0, pen(0x200, 9.0, dw(1)))]
    return plusfile(upto(n, s, lambda i: plus(0x4019, 0x4000, dw(4) + w(*xy(), *xy(), *xy(), *xy()))))
@family
def plus_pen_gradient_body(n):
    g = pathgrad([fxy(), fxy(), fxy(), fxy()], [0xFF000000 | R.randrange(1 << 24) for _ in range(4)])
    s = [pobj(PEN, 0, dw(PV, 0, 0, 2) + f(9.0) + g)]
    return plusfile(upto(n, s, lambda i: plus(0x4019, 0x4000, dw(4) + w(*xy(), *xy(), *xy(), *xy()))))
@family
def plus_curves(n):
    s = [pobj(PEN, 0, pen())]
    m = n // 4 - 300
    return plusfile(s + [plus(0x4018, 0x4000, f(.5) + dw(0, m - 1, m) + b''.join(w(*xy()) for _ in range(m)))])
def pbitmap(wd, ht, data, fmt=0x26200A): return dw(PV, 1, wd, ht, wd * 4, fmt, 0) + data
@family
def plus_image_parts(n):
    k = int((n / 2 / 4) ** .5)
    s = [pobj(IMAGE, 0, pbitmap(k, k, R.randbytes(k * k * 4)))]
    return plusfile(upto(n, s, lambda i: plus(0x401A, 0, dw(0xFFFFFFFF, 2) + f(i % 9, i % 7, k - 9, k - 7) + f(*[float(v) for v in box(500)]))))
@family
def plus_image_points(n):
    k = int((n / 2 / 4) ** .5)
    s = [pobj(IMAGE, 0, pbitmap(k, k, R.randbytes(k * k * 4)))]
    return plusfile(upto(n, s, lambda i: plus(0x401B, 0x4000, dw(0xFFFFFFFF, 2) + f(0, 0, k, k) + dw(3) + w(*xy(), *xy(), *xy()))))
@family
def plus_image_attrs(n):
    k = int((n / 2 / 4) ** .5)
    s = [pobj(IMAGE, 0, pbitmap(k, k, R.randbytes(k * k * 4))), pobj(ATTRS, 1, dw(PV, 0, 0, 0xFF00FF00, 1, 0))]
    return plusfile(upto(n, s, lambda i: plus(0x401A, 0, dw(1, 2) + f(-900, -900, 9000, 9000) + f(*[float(v) for v in box(500)]))))
@family
def plus_texture_moved(n):
    k = 16
    s = [pobj(BRUSH, 0, dw(PV, 2, 0, 0) + pbitmap(k, k, R.randbytes(k * k * 4)))]
    return plusfile(upto(n, s, lambda i: [plus(0x402D, 0, f(1, 1)), plus(0x400A, 0x4000, dw(0, 1) + w(*box()))]))
@family
def plus_texture_each(n):
    k = 2
    return plusfile(upto(n, [], lambda i: [pobj(BRUSH, 0, dw(PV, 2, 0, i % 5) + pbitmap(k, k, R.randbytes(k * k * 4))), plus(0x400A, 0x4000, dw(0, 1) + w(*box()))]))
@family
def plus_texture_large_again(n):
    k = int((n / 2 / 4) ** .5)
    s = [pobj(BRUSH, 0, dw(PV, 2, 0, 4) + pbitmap(k, k, R.randbytes(k * k * 4)))]
    return plusfile(upto(n, s, lambda i: [plus(0x400A, 0x4000, dw(0, 1) + w(*box()))]))
@family
def plus_hatches(n):
    return plusfile(upto(n, [], lambda i: [pobj(BRUSH, 0, dw(PV, 1, i % 53, 0xFF000000 | R.randrange(1 << 24), 0xFFFFFFFF)), plus(0x400A, 0x4000, dw(0, 1) + w(*box(3)))]))
def pfont(name='Arial', em=20.0): return dw(PV) + f(em) + dw(2, 0, 0, len(name)) + name.encode('utf-16le')
@family
def plus_string(n):
    s = [pobj(FONT, 0, pfont())]
    return plusfile(upto(n, s, lambda i: plus(0x401C, 0x8000, dw(0xFF000000, 0xFFFFFFFF, 1) + f(*map(float, box(300))) + 'A'.encode('utf-16le'))))
@family
def plus_string_long(n):
    k = (n - 1000) // 2
    t = ''.join(R.choice('ab c') for _ in range(k))
    return plusfile([pobj(FONT, 0, pfont()), plus(0x401C, 0x8000, dw(0xFF000000, 0xFFFFFFFF, k) + f(0, 0, 200, 900) + t.encode('utf-16le'))])
@family
def plus_string_narrow(n):
    k = (n - 1000) // 2
    t = 'x' * k
    return plusfile([pobj(FONT, 0, pfont()), plus(0x401C, 0x8000, dw(0xFF000000, 0xFFFFFFFF, k) + f(0, 0, 1, 900) + t.encode('utf-16le'))])
@family
def plus_string_nospace(n):
    k = (n - 1000) // 2
    t = 'x' * k
    return plusfile([pobj(FONT, 0, pfont()), plus(0x401C, 0x8000, dw(0xFF000000, 0xFFFFFFFF, k) + f(0, 0, 0, 0) + t.encode('utf-16le'))])
@family
def plus_string_trim(n):
    k = (n - 1000) // 2
    t = ''.join(R.choice('ab c\n') for _ in range(k))
    fmt = dw(PV, 0, 0, 0, 0, 0, 0, 0) + f(0) + dw(0) + f(0, 0, 0) + dw(3, 0, 0)
    return plusfile([pobj(FONT, 0, pfont()), pobj(FORMAT, 1, fmt), plus(0x401C, 0x8000, dw(0xFF000000, 1, k) + f(0, 0, 100, 90000) + t.encode('utf-16le'))])
@family
def plus_string_hotkeys(n):
    k = (n - 1000) // 2
    t = ('&x' * k)[:k]
    fmt = dw(PV, 0, 0, 0, 0, 0, 0, 0) + f(0) + dw(1) + f(0, 0, 0) + dw(0, 0, 0)
    return plusfile([pobj(FONT, 0, pfont()), pobj(FORMAT, 1, fmt), plus(0x401C, 0x8000, dw(0xFF000000, 1, k) + f(0, 0, 700, 90000) + t.encode('utf-16le'))])
@family
def plus_string_tabs(n):
    k = (n - 1000) // 4
    t = ('\tx' * k)[:k]
    fmt = dw(PV, 0, 0, 0, 0, 0, 0, 0) + f(0) + dw(0) + f(0, 0, 0) + dw(0, k // 2, 0) + f(5) + f(*[5.0] * (k // 2))
    return plusfile([pobj(FONT, 0, pfont()), pobj(FORMAT, 1, fmt), plus(0x401C, 0x8000, dw(0xFF000000, 1, k) + f(0, 0, 700, 90000) + t.encode('utf-16le'))])
@family
def plus_string_gradient(n):
    s = [pobj(FONT, 0, pfont()), pobj(BRUSH, 1, lingrad(2))]
    return plusfile(upto(n, s, lambda i: plus(0x401C, 0, dw(1, 0xFFFFFFFF, 20) + f(*map(float, box(300))) + 'g&@abcdefghijklmnopq'.encode('utf-16le')[:40].ljust(40, b'a'))))
@family
def plus_string_gradient_stops(n):
    s = [pobj(FONT, 0, pfont()), pobj(BRUSH, 1, lingrad(n // 16))]
    return plusfile(upto(n, s, lambda i: plus(0x401C, 0, dw(1, 0xFFFFFFFF, 1) + f(*map(float, box(300))) + w(97, 0))))
@family
def plus_driverstring(n):
    k = 1000
    s = [pobj(FONT, 0, pfont())]
    def m(i): return plus(0x4036, 0x8000, dw(0xFF000000, 1, 0, k) + ''.join(R.choice('abcdef') for _ in range(k)).encode('utf-16le') + f(*[float(R.randrange(700)) for _ in range(2 * k)]))
    return plusfile(upto(n, s, m))
@family
def plus_saves(n): return plusfile(upto(n, [plus(0x4025, 0, dw(j)) for j in range(1000)], lambda i: plus(0x4026, 0, dw(77777))))
@family
def plus_containers(n): return plusfile(upto(n, [], lambda i: [plus(0x4028, 0, dw(i)), plus(0x4032, 0x100, f(1, 1, 700, 900))]))
@family
def plus_garbage(n): return plusfile([R.randbytes(n // 4 * 4 - 500)])
@family
def plus_pies(n): return plusfile(upto(n, [], lambda i: plus(0x4010, 0xC000, dw(0xFF000000 + i) + f(3, 350) + w(*box()))))
def pmeta(b): return dw(PV, 2, 3, len(b)) + b
@family
def nested_shapes(n):
    inner = emf([rec(43, dw(*box())) for _ in range(n // 48)])
    s = [pobj(IMAGE, 0, pmeta(inner))]
    return plusfile(upto(n, s, lambda i: plus(0x401A, 0, dw(0xFFFFFFFF, 2) + f(0, 0, 790, 1120) + f(0, 0, 700, 900))))
@family
def nested_small(n):
    inner = emf([rec(43, dw(*box()))])
    s = [pobj(IMAGE, 0, pmeta(inner))]
    return plusfile(upto(n, s, lambda i: plus(0x401A, 0, dw(0xFFFFFFFF, 2) + f(0, 0, 790, 1120) + f(i % 9, 0, 700, 900))))
@family
def nested_handles(n):
    inner = emf([rec(43, dw(*box()))], handles=65535)
    s = [pobj(IMAGE, 0, pmeta(inner))]
    return plusfile(upto(n, s, lambda i: plus(0x401A, 0, dw(0xFFFFFFFF, 2) + f(0, 0, 790, 1120) + f(i % 9, 0, 700, 900))))
@family
def nested_deep(n):
    inner = emf([rec(43, dw(*box())) for _ in range(20)])
    k = 0
    for d in range(7):
        rows = [pobj(IMAGE, 0, pmeta(inner))] + [plus(0x401A, 0, dw(0xFFFFFFFF, 2) + f(0, 0, 790, 1120) + f(j, 0, 700, 900)) for j in range(10)]
        inner = plusfile(rows)
    s = [pobj(IMAGE, 0, pmeta(inner))]
    return plusfile(upto(n, s, lambda i: plus(0x401A, 0, dw(0xFFFFFFFF, 2) + f(0, 0, 790, 1120) + f(i % 9, 0, 700, 900))))
@family
def nested_bitmap(n):
    k = int((n / 2 / 3) ** .5); k -= k % 4
    inner = emf([stretch((0, 0, 700, 700), (0, 0, k, k), *dib(k, k, 24, R.randbytes(k * k * 3)))])
    s = [pobj(IMAGE, 0, pmeta(inner))]
    return plusfile(upto(n, s, lambda i: plus(0x401A, 0, dw(0xFFFFFFFF, 2) + f(0, 0, 790, 1120) + f(i % 9, 0, 700, 900))))
@family
def nested_1bit(n):
    k = int((n / 2) ** .5 * 2.8); k -= k % 32
    inner = emf([stretch((0, 0, 700, 700), (0, 0, k, k), *dib(k, k, 1, bytes(k * k // 8), 0, [0, 0xFFFFFF]))])
    s = [pobj(IMAGE, 0, pmeta(inner))]
    return plusfile(upto(n, s, lambda i: plus(0x401A, 0, dw(0xFFFFFFFF, 2) + f(0, 0, 790, 1120) + f(i % 9, 0, 700, 900))))
@family
def nested_texts(n):
    inner = emf([font(1), SEL(1)] + [rec(108, dw(*xy(), 4000, 0x300, 1) + f(1, 1) + bytes(R.randrange(33, 127) for _ in range(4000))) for _ in range(n // 2 // 4040)])
    s = [pobj(IMAGE, 0, pmeta(inner))]
    return plusfile(upto(n, s, lambda i: plus(0x401A, 0, dw(0xFFFFFFFF, 2) + f(0, 0, 790, 1120) + f(i % 9, 0, 700, 900))))
@family
def nested_wmf(n):
    inner = wmf([wrec(0x41B, w(*xy(), *xy())) for _ in range(n // 2 // 14)])
    s = [pobj(IMAGE, 0, dw(PV, 2, 2, len(inner)) + inner)]
    return plusfile(upto(n, s, lambda i: plus(0x401A, 0, dw(0xFFFFFFFF, 2) + f(0, 0, 790, 1120) + f(i % 9, 0, 700, 900))))
@family
def nested_floods(n):
    inner = emf(upto(n // 2, [brush_(1), SEL(1)], lambda i: rec(43, dw(*box()))) + [flood(*xy(), 0, 0)] * 20)
    s = [pobj(IMAGE, 0, pmeta(inner))]
    return plusfile(upto(n, s, lambda i: plus(0x401A, 0, dw(0xFFFFFFFF, 2) + f(0, 0, 790, 1120) + f(i % 9, 0, 700, 900))))
@family
def nested_fonts(n):
    inner = emf(upto(n // 2, [], lambda i: [font(1, 'F%d' % i), SEL(1), text(*xy(), 'ab'), rec(40, dw(1))]))
    s = [pobj(IMAGE, 0, pmeta(inner))]
    return plusfile(upto(n, s, lambda i: plus(0x401A, 0, dw(0xFFFFFFFF, 2) + f(0, 0, 790, 1120) + f(i % 9, 0, 700, 900))))
@family
def nested_rops(n):
    inner = emf(upto(n // 2, [stretch((0, 0, 700, 900), (0, 0, 4, 4), *dib(4, 4, 24, R.randbytes(48)))],
       lambda i: stretch((*xy(), 300, 300), (0, 0, 4, 4), *dib(4, 4, 24, R.randbytes(48)), rop=(0x660046, 0x8800C6, 0xEE0086, 0x440328)[i % 4])))
    s = [pobj(IMAGE, 0, pmeta(inner))]
    return plusfile(upto(n, s, lambda i: plus(0x401A, 0, dw(0xFFFFFFFF, 2) + f(0, 0, 790, 1120) + f(i % 9, 0, 700, 900))))
# -- WMF
@family
def wmf_lines(n): return wmf(upto(n, [], lambda i: wrec(0x213, w(*xy()))))
@family
def wmf_rects(n): return wmf(upto(n, [], lambda i: wrec(0x41B, w(*xy(), *xy()))))
@family
def wmf_text(n): return wmf(upto(n, [], lambda i: wrec(0x521, w(2) + b'A&' + w(*xy()))))
@family
def wmf_objects(n): return wmf(upto(n, [], lambda i: wrec(0x2FC, w(0, i, 0, 0))), objects=65535)
@family
def wmf_objects_delete(n): return wmf(upto(n, [], lambda i: [wrec(0x2FC, w(0, i, 0, 0)), wrec(0x1F0, w(i % 7))]), objects=65535)
@family
def wmf_polypolygon(n):
    k = min((n - 300) // 8, 8000)
    return wmf(upto(n, [], lambda i: wrec(0x538, w(k) + w(2) * k + b''.join(w(*xy()) for _ in range(2 * k)))) if n > k * 10 + 500 else [wrec(0x538, w(1) + w(2) + w(1, 1, 9, 9))])
@family
def wmf_no_size(n):
    # nothing says where the picture is: everything is played twice
    d = wmf(upto(n, [], lambda i: wrec(0x41B, w(*xy(), *xy()))))
    return d[22:]
@family
def wmf_escapes(n): return wmf(upto(n, [], lambda i: wrec(0x626, w(0x0F, 4) + b'abcd')))
@family
def wmf_escape_emf(n):
    inner = emf(upto(n * 9 // 10, [], lambda i: rec(43, dw(*box()))))
    recs = []
    step = 4000; parts = [inner[i:i + step] for i in range(0, len(inner), step)]
    for i, p in enumerate(parts):
        b = dw(0x43464D57, 1, 0x10000) + w(0) + dw(0, len(parts), len(p), len(inner) - sum(map(len, parts[:i + 1])), len(inner)) + p
        recs.append(wrec(0x626, w(15, len(b)) + b))
    recs.append(wrec(0x41B, w(*xy(), *xy())))
    return wmf(recs)
@family
def wmf_bad_sizes(n): return wmf(upto(n, [], lambda i: dw(0x7FFFFFF0) + w(0x41B, *xy(), *xy())))
@family
def wmf_bad_small(n): return wmf(upto(n, [], lambda i: dw(2) + w(0x41B, *xy(), *xy())))
@family
def wmf_garbage(n): return wmf([wrec(0x41B, w(90, 90, 1, 1)), R.randbytes(n - 400)])
@family
def wmf_zeros(n): return wmf([wrec(0x41B, w(90, 90, 1, 1)), bytes(n - 400)])
@family
def emf_zeros(n): return emf([rec(43, dw(1, 1, 99, 99)), bytes((n - 400) // 4 * 4)])
@family
def wmf_regions(n):
    # scans
    def reg(i):
        scans = b''.join(w(2, y, y + 1, R.randrange(300), 300 + R.randrange(300), 2) for y in range(100))
        return wrec(0x6FF, w(0, 6, 0, len(scans) // 2 + 11, 100, 2, 0, 0, 700, 100) + scans)
    return wmf(upto(n, [], lambda i: [reg(i), wrec(0x12C, w(0)), wrec(0x41B, w(*xy(), *xy())), wrec(0x1F0, w(0))]))
@family
def gz_zeros(n):
    # more than is unpacked
    raw = emf(upto(min(n * 1000, 200_000_000), [], lambda i: rec(70, bytes(1 << 20))))
    return gzip.compress(raw, 9, mtime=0)
@family
def gz_names(n):
    # names 1 GiB in its end, has nothing
    b = gzip.compress(R.randbytes(max(n - 100, 10)), 1, mtime=0)
    return b[:-4] + dw(0x3FFFFFFF)
@family
def gz_rects(n):
    # as much as is unpacked
    raw = emf(upto(max(32_000_000, n * 32), [], lambda i: rec(43, dw(1, 1, 50, 50))))
    return gzip.compress(raw, 9, mtime=0)
@family
def gz_boxes(n):
    raw = emf(upto(max(32_000_000, n * 32), [], lambda i: rec(43, dw(*[x % 9 * 9 for x in (i, i // 9, i // 7, i // 5)]))))
    return gzip.compress(raw, 9, mtime=0)
@family
def gz_texts(n):
    text = 'A'.encode('utf-16le') * 2
    def m(i): return rec(84, dw(0, 0, 9, 9, 1) + f(1, 1) + dw(i % 99, i % 77, 2, 76, 0, 0, 0, 9, 9, 0) + text)
    raw = emf(upto(max(32_000_000, n * 32), [], m))
    return gzip.compress(raw, 9, mtime=0)

# -- what a short record asks for again
def wregion(rects):
    rows, body = {}, b''
    for l, t, r, b in rects: rows.setdefault((t, b), []).append((l, r))
    for (t, b), spans in rows.items():
        body += w(2 * len(spans), t, b) + b''.join(w(*span) for span in spans) + w(2 * len(spans))
    return wrec(0x6FF, w(0, 6) + dw(0) + w(len(body) + 22 & 0xFFFF, len(rows), 500, 0, 0, 1000, 1000) + body)

def wmf_region_again(name, again):
    def make(n):
        grid = [(i % 250 * 4, i // 250 * 2, i % 250 * 4 + 2, i // 250 * 2 + 1) for i in range(min(n // 8, 30000))]
        return wmf(upto(n, [wregion(grid), wrec(0x2FC, w(0) + dw(0xFF) + w(0))], again))
    make.__name__ = 'wmf_region_' + name
    family(make)

wmf_region_again('fill', lambda i: wrec(0x228, w(0, 1)))
wmf_region_again('frame', lambda i: wrec(0x429, w(0, 1, 1, 1)))
wmf_region_again('invert', lambda i: wrec(0x12A, w(0)))
wmf_region_again('clip', lambda i: [wrec(0x12C, w(0)), wrec(0x220, w(i % 9, 1)), wrec(0x41B, w(9 + i % 99, 9, 1, 1))])

def plus_region_again(name, again):
    def tree(first, end):
        if end - first == 1: return dw(0x10000000) + f(first % 250 * 4, first // 250 * 2, 2, 1)
        middle = (first + end) // 2
        return dw(2) + tree(first, middle) + tree(middle, end)
    def make(n):
        k = n // 48
        return plusfile(upto(n, [plus(0x4008, REGION << 8, dw(PV, 2 * k - 1) + tree(0, k))], again))
    make.__name__ = 'plus_region_' + name
    family(make)

plus_region_again('fill_again', lambda i: plus(0x4013, 0x8000, dw(0xFF203040)))
plus_region_again('clip_again', lambda i: [plus(0x4034, 0), plus(0x4035, 0, f(1, 0)), plus(0x400A, 0xC000, dw(0xFF00FF, 1) + w(*box()))])

def grid_clip(n):
    grid = [(i % 300 * 3, i // 300 * 3, i % 300 * 3 + 1, i // 300 * 3 + 1) for i in range(n // 32)]
    return rec(75, dw(len(region(grid)), 5) + region(grid))
@family
def clip_region_moves(n):
    return emf(upto(n, [grid_clip(n)], lambda i: [rec(26, dw(1, 0)), rec(43, dw(*box()))]))
@family
def clip_region_saves(n):
    return emf(upto(n, [grid_clip(n)], lambda i: [rec(33), rec(34, dw(-1)), rec(43, dw(*box()))]))
@family
def brushes_then_mask_pairs(n):
    def brush(i):
        info, bits = dib(8, 8, 1, b''.join(struct.pack('<I', (i * 2654435761 + k) & 0xFFFFFFFF) for k in range(8)), 0, [0, 0xFFFFFF])
        return [patbrush(1 + i % 8, info, bits), SEL(1 + i % 8), rec(43, dw(i % 700, i // 700, i % 700 + 9, i // 700 + 9)), rec(40, dw(1 + i % 8))]
    info, bits = dib(2, 2, 1, b'\x40\0\0\0\x80\0\0\0', 0, [0, 0xFFFFFF])
    def pair(i): return [stretch((i % 500, i // 500, 2, 2), (0, 0, 2, 2), info, bits, rop) for rop in (0x8800C6, 0xEE0086)]
    return emf(upto(n, upto(n // 2, [], brush), pair))
@family
def floods_over_texts(n):
    def m(i): return rec(108, dw(*xy(), 4000, 0x300, 1) + f(1, 1) + R.randbytes(4000))
    return emf(upto(n, upto(n // 2, [font(1), SEL(1)], m) + [brush_(2), SEL(2)], lambda i: [flood(*xy(), 0, 0), rec(43, dw(*box()))]))
@family
def floods_and_inversions_over_texts(n):
    def m(i): return rec(108, dw(*xy(), 4000, 0x300, 1) + f(1, 1) + R.randbytes(4000))
    return emf(upto(n, upto(n // 2, [font(1), SEL(1)], m) + [brush_(2), SEL(2), rec(20, dw(7))], lambda i: [flood(*xy(), 0, 0), rec(43, dw(*box(5)))]))

# -- measuring

def measure(tool, path, options=()):
    """Seconds of CPU time, MiB of memory at most, bytes of document, exit status."""
    out = path + '.svg'
    pid = os.fork()
    if pid == 0:
        resource.setrlimit(resource.RLIMIT_CPU, (120, 120))
        resource.setrlimit(resource.RLIMIT_AS, (6 << 30, 6 << 30))
        quiet = os.open(os.devnull, os.O_WRONLY)
        os.dup2(quiet, 1)
        os.dup2(quiet, 2)
        os.execv(tool, [tool, *options, '-o', out, path])
    _, status, usage = os.wait4(pid, 0)
    size = os.path.getsize(out) if os.path.exists(out) else 0
    if size:
        os.unlink(out)
    return usage.ru_utime + usage.ru_stime, usage.ru_maxrss / 1024, size, status


def main():
    if len(sys.argv) < 4 or sys.argv[1] not in ('build', 'run'):
        sys.exit(__doc__)
    mode, target, size = sys.argv[1], sys.argv[2], int(float(sys.argv[3]))
    names, options = sys.argv[4:], []
    if '--' in names:
        names, options = names[:names.index('--')], names[names.index('--') + 1:]
    with tempfile.TemporaryDirectory() as folder:
        empty = os.path.join(folder, 'empty')
        with open(empty, 'wb') as file:
            file.write(emf([rec(43, dw(1, 1, 9, 9))]))
        base = measure(target, empty)[1] if mode == 'run' else 0
        for name in FAMILIES:
            if names and not any(part in name for part in names):
                continue
            R.seed(1)
            path = os.path.join(target if mode == 'build' else folder, name)
            with open(path, 'wb') as file:
                file.write(FAMILIES[name](size))
            if mode == 'build':
                continue
            length = os.path.getsize(path)
            seconds, memory, document, status = measure(target, path, options)
            marks = ' '.join(mark for mark, isOver in (
                ('TIME', seconds > 2), ('MEMORY', memory > 256), ('DOCUMENT', document > 300e6),
                ('STATUS %d' % status, status > 0xFF and status >> 8 != 3)) if isOver)
            print('%-32s %8.3f MB %7.2f s %6.0f MiB %9.3f MB of document, x %.1f; memory x %.1f %s'
                  % (name, length / 1e6, seconds, memory, document / 1e6, document / length,
                     (memory - base) * 2 ** 20 / (length + document), marks), flush=True)
            os.unlink(path)


main()
