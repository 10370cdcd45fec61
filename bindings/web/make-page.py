#!/usr/bin/env python3
"""Puts the page for metafiles together in one file.

usage: bindings/web/make-page.py svgtool.wasm page.html
"""

import base64
import gzip
import hashlib
import pathlib
import re
import sys

HERE = pathlib.Path(__file__).resolve().parent


def hash_of(page, element):
    text = re.search(f"<{element}[^>]*>(.*?)</{element}>", page, re.S).group(1)
    return base64.b64encode(hashlib.sha256(text.encode()).digest()).decode()


def main():
    module, out = map(pathlib.Path, sys.argv[1:])
    packed = gzip.compress(module.read_bytes(), 9, mtime=0)
    # In one script nothing is exported.
    library = re.sub(r"^export ", "", (HERE / "svgtool.js").read_text(), flags=re.M)
    parts = {"LIBRARY": library, "ZIP": (HERE / "zip.js").read_text(),
             "SCRIPT": (HERE / "page.js").read_text(),
             "MODULE": base64.b64encode(packed).decode()}
    page = (HERE / "page.html").read_text()
    for name, text in parts.items():
        page = page.replace(f"@{name}@", text)
    # Nothing but what stands in the file is taken for its style and script.
    for element in ("style", "script"):
        page = page.replace(f"@{element.upper()}_HASH@", hash_of(page, element))
    out.write_text(page)


main()
