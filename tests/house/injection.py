"""Hostile texts wherever a metafile or its name has room for one: documents, reports and pages hold
them as texts, and are otherwise those of harmless texts. injection.py TOOL"""

import html.parser
import itertools
import json
import os
import re
import struct
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree

HARMLESS = ["Harmless", "two words", "\u05d0\u05d1", "9 < 10 & 'so' on", "\U0001F600", ""]
HOSTILE = [
    "</text></svg><script>alert(1)</script>", '" onload="alert(1)', "' onload='alert(1)",
    "]]>", "<![CDATA[", "-->", "--!><b>", "<!--", "<?xml version='1.0'?>", "<!DOCTYPE a [",
    "&lt;&#60;&amp;&a;", "&#x202E;", "%1 %2 %s %n", "javascript:alert(1)", "data:text/html,<b>",
    "url(http://a.example/)", "a', url(//a.example/b); fill: url(#c", "a\\27 ; } * { fill: red",
    "expression(alert(1))", "\\", "\\\"", "${a}`", "../../etc/passwd",
    "\u2028\u2029\u202e\u200f\u0085", "\x1b]0;a\x07\x1b[2J\x9b2J\x7f\x08", "\ud800",
    "\udc00\ud800a", "\ufffe\uffff\ufdd0", "</title><a href='b'>",
    "</style><style>*{}", "A" * 5000 + "<b>",
]
SVG, LINK = "{http://www.w3.org/2000/svg}", "{http://www.w3.org/1999/xlink}href"


def utf16(text):
    return text.encode("utf-16-le", "surrogatepass")


def padded(data, size=4):
    return data + bytes(-len(data) % size)


def record(kind, data):
    return struct.pack("<II", kind, 8 + len(padded(data))) + padded(data)


def emf(records, text):
    description = utf16(text) + b"\0\0" + utf16(text) + b"\0\0\0\0"
    records += record(14, struct.pack("<III", 0, 16, 20))
    size = 108 + len(padded(description))
    head = struct.pack("<II8iIIIIHHIII4i3I2i", 1, size, 0, 0, 100, 50, 0, 0, 10000, 5000,
                       0x464D4520, 0x10000, size + len(records), 99, 9, 0, len(description) // 2,
                       108, 0, 1000, 1000, 1000, 1000, 0, 0, 0, 0, 0)
    return head + padded(description) + records


def gdi(text):
    """A face, a run of text and comments."""
    face = utf16(text)[:62].ljust(64, b"\0")
    run = struct.pack("<4iIff2i3I4iI", 0, 0, 0, 0, 1, 1, 1, 5, 30, len(utf16(text)) // 2, 76, 0,
                      0, 0, 0, 0, 0) + utf16(text)
    comment = text.encode("utf-8", "surrogatepass")
    font = struct.pack("<I5i8B", 1, -20, 0, 0, 0, 400, 0, 0, 0, 1, 0, 0, 0, 0)
    return emf(record(70, struct.pack("<I", len(comment)) + comment)
               + record(82, (font + face).ljust(324, b"\0")) + record(37, struct.pack("<I", 1))
               + record(84, run), text)


def plus(text):
    """The same in EMF+, with a comment of its own."""
    def one(kind, flags, data):
        data = padded(data)
        return struct.pack("<HHII", kind, flags, 12 + len(data), len(data)) + data
    font = struct.pack("<IfIiII", 0xDBC01002, 20, 2, 0, 0, len(utf16(text)) // 2) + utf16(text)
    run = struct.pack("<III4f", 0xFF000000, 0, len(utf16(text)) // 2, 5, 5, 0, 0) + utf16(text)
    chain = (one(0x4001, 0, struct.pack("<IIII", 0xDBC01002, 1, 96, 96))
             + one(0x4003, 0, utf16(text))
             + one(0x4008, 0x600, font) + one(0x401C, 0x8000, run) + one(0x4002, 0, b""))
    return emf(record(70, struct.pack("<II", 4 + len(chain), 0x2B464D45) + chain), text)


def wmf(text):
    """Bytes of Windows' Latin letters, and an escape."""
    letters = text.encode("cp1252", "replace")[:30000]
    def one(kind, data):
        return struct.pack("<IH", 3 + len(padded(data, 2)) // 2, kind) + padded(data, 2)
    font = struct.pack("<5h8B", -20, 0, 0, 0, 400, 0, 0, 0, 0, 0, 0, 0, 0)
    records = (one(0x0626, struct.pack("<HH", 0x0F, len(letters)) + letters)
               + one(0x02FB, font + letters[:31].ljust(32, b"\0")) + one(0x012D, b"\0\0")
               + one(0x0521, struct.pack("<H", len(letters)) + padded(letters, 2)
                     + struct.pack("<hh", 5, 5)) + one(0, b""))
    words = len(records) // 2
    return struct.pack("<HHHIHIH", 1, 9, 0x300, 9 + words, 1, words, 0) + records


def shown(text):
    """What XML has of a text: no controls, and something else for halves of pairs."""
    return "".join("?" if "\ud800" <= letter < "\ue000" else letter for letter in text
                   if " " <= letter and letter not in "\ufffe\uffff")


class Page(html.parser.HTMLParser):
    """The tags and attributes of a page, and its texts."""
    def __init__(self, page):
        super().__init__()
        self.tags, self.texts, self.names = set(), [], []
        self.feed(page)

    def handle_starttag(self, tag, attrs):
        self.tags.add((tag,) + tuple(name for name, _ in attrs))
        self.names += [value for name, value in attrs if name == "alt"]

    def handle_data(self, data):
        self.texts.append(data)

    def handle_comment(self, data):
        self.tags.add(("comment", data))

    def handle_decl(self, decl):
        self.tags.add(("declaration", decl))

    def unknown_decl(self, data):
        self.tags.add(("unknown", data))


def families(value):
    """The names of a list of font families, as CSS reads them; nothing if it holds anything else."""
    letter = r"[^\x00-,./:-@\[-^`{-\x7f]|\\."
    name = rf"""'(?:[^'\\\n]|\\.)*'|"(?:[^"\\\n]|\\.)*"|(?:{letter})+(?: (?:{letter})+)*"""
    return re.fullmatch(rf"(?:{name})(?:, ?(?:{name}))*", value, re.S)


def look(path):
    """Elements with their attributes, and the texts of a document that are not empty."""
    root = ElementTree.parse(path).getroot()
    parts, texts = set(), {}
    for element in root.iter():
        parts.add((element.tag,) + tuple(element.attrib))
        for name, value in element.attrib.items():
            if name == "font-family":
                assert families(value), (path, value)
            elif name == LINK:
                assert value.startswith("#"), (path, value)
            elif name != "id":
                assert re.fullmatch(r"[\w\s#%.,()-]*", value, re.ASCII), (path, name, value)
        if element.tag in (SVG + "title", SVG + "desc", SVG + "text"):
            texts[element.tag[len(SVG):]] = "".join(element.itertext())
    return parts, texts


def run(tool, *args):
    result = subprocess.run([tool, *args], capture_output=True)
    printed = result.stdout + result.stderr
    assert result.returncode in (0, 1, 3), (args, result)
    # Of controls only line feeds, also as UTF-8: they would be orders to a terminal.
    assert not re.search(rb"[\0-\x09\x0b-\x1f\x7f]|\xc2[\x80-\x9f]", printed), (args, printed)
    return result.stdout


def convert(tool, texts, folder):
    """A file of each kind for each text, in whose names they are, too; what is made of them."""
    made, names = {}, {}
    kinds = ("emf", gdi), ("plus.emf", plus), ("wmf", wmf), ("cut.emf", lambda text: gdi(text)[:-30])
    for (number, text), (kind, make) in itertools.product(enumerate(texts), kinds):
        name = text.replace("/", "_")[:60].encode("utf-8", "replace")
        path = os.path.join(os.fsencode(folder), b"%d " % number + name + b"." + kind.encode())
        with open(path, "wb") as file:
            file.write(make(text))
        names[path] = (kind, text)
    page = os.path.join(folder, "page.html")
    run(tool, "-q", folder, "-o", os.path.join(folder, "made", ""), "--gallery", page)
    for path, (kind, text) in names.items():
        document = os.path.join(os.fsencode(folder), b"made", os.path.basename(path) + b".svg")
        made[kind, text] = look(os.fsdecode(document))
    reports = json.loads(run(tool, "-q", "--info", "--json", folder))
    run(tool, "--info", folder)
    with open(page, encoding="utf-8") as file:
        read = Page(file.read())
    # Each picture has its name, in which controls and what turns others around are question marks.
    controls = re.compile("[\0-\x1f\x7f-\x9f\u202a\u202b\u202d\u202e\u2066-\u2068]")
    assert {controls.sub("?", path.decode("utf-8", "replace")) for path in names} <= set(read.names)
    return made, reports, read


def keys(value):
    if isinstance(value, dict):
        return set(value).union(*map(keys, value.values()))
    return set().union(*map(keys, value)) if isinstance(value, list) else set()


def main(tool):
    with tempfile.TemporaryDirectory() as harmless, tempfile.TemporaryDirectory() as hostile:
        usual, usual_reports, usual_page = convert(tool, HARMLESS, harmless)
        made, reports, page = convert(tool, HOSTILE, hostile)
    parts = set().union(*(elements for elements, _ in usual.values()))
    for (kind, text), (elements, texts) in list(made.items()) + list(usual.items()):
        assert elements <= parts, (kind, text, elements - parts)
        if kind in ("emf", "plus.emf"):
            expected = shown(text.split("\0")[0])
            assert texts.get("title", "") == expected, (kind, text, texts)
            # Nor does a run have the controls that XML would allow.
            drawn = re.sub("[\x7f-\x9f]", "", texts.get("text", "")).replace("\ufffd", "?")
            assert drawn == re.sub("[\x7f-\x9f]", "", expected), (kind, text, texts)
    assert keys(reports) <= keys(usual_reports), keys(reports) - keys(usual_reports)
    assert page.tags <= usual_page.tags, page.tags - usual_page.tags
    refused = subprocess.run([tool, "--id-prefix", 'a"><script>', "a.emf"], capture_output=True)
    assert refused.returncode == 2
    print(f"{len(made)} hostile files, {len(usual)} harmless ones")


if __name__ == "__main__":
    main(*sys.argv[1:])
