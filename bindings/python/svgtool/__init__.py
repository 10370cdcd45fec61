"""Draws Windows metafiles (EMF, EMF+ and WMF) as SVG.

    picture = svgtool.convert(pathlib.Path("chart.emf").read_bytes(), width=800)
    pathlib.Path("chart.svg").write_text(picture.svg)

A damaged metafile is no error: its picture shows what can be read, and Picture.verdict says so.
"""

from __future__ import annotations

import ctypes
import json
import threading
from typing import Any, Dict, List, Optional, Union

from . import _library

__all__ = ["BadOptions", "Error", "NotAMetafile", "Picture", "convert", "version"]

_lib = _library.load()
_TEXTS = {"characters": 0, "outlines": 1}
_SOURCES = {"best": 0, "wmf": 1, "emf": 2}


class Error(Exception):
    """There is no picture. The text says why."""


class NotAMetafile(Error, ValueError):
    """The bytes are no metafile, or what gzip has packed is damaged or too large."""


class BadOptions(Error, ValueError):
    """A size or a prefix is not allowed."""


_NOT_A_METAFILE, _DAMAGED_GZIP, _TOO_LARGE, _BAD_OPTIONS, _OUT_OF_MEMORY = range(1, 6)
_EXCEPTIONS = {
    _NOT_A_METAFILE: NotAMetafile,
    _DAMAGED_GZIP: NotAMetafile,
    _TOO_LARGE: NotAMetafile,
    _BAD_OPTIONS: BadOptions,
    _OUT_OF_MEMORY: MemoryError,
}


def _text(function: Any, handle: int) -> str:
    length = ctypes.c_size_t()
    address = function(handle, ctypes.byref(length))
    return ctypes.string_at(address, length.value).decode()


class Picture:
    """A picture, and what is known of it. What convert() returns; it does not change.

    svg      the document: SVG 1.1
    width    of the document in CSS pixels, as height
    verdict  "complete"; "approximated", where some of it may look different; "lost", where it lacks
             what a record should have painted; or "damaged", where the metafile is
    """

    __slots__ = ("svg", "width", "height", "verdict", "_handle", "_report", "_lock")

    svg: str
    width: float
    height: float
    verdict: str

    def __init__(self, handle: int) -> None:
        self._handle = handle
        self._report: Optional[Dict[str, Any]] = None
        self._lock = threading.Lock()
        self.svg = _text(_lib.svgtool_picture_document, handle)
        self.width = _lib.svgtool_picture_width(handle)
        self.height = _lib.svgtool_picture_height(handle)
        verdict = _lib.svgtool_picture_verdict(handle)
        self.verdict = _lib.svgtool_verdict_text(verdict).decode()

    def __del__(self) -> None:
        _lib.svgtool_picture_free(self._handle)

    def __repr__(self) -> str:
        return f"<svgtool.Picture {self.width:g} by {self.height:g}, {self.verdict}>"

    @property
    def report(self) -> Dict[str, Any]:
        """What became of the records, as report.schema.json describes it."""
        with self._lock:
            if self._report is None:
                self._report = json.loads(_text(_lib.svgtool_picture_report, self._handle))
            return self._report

    @property
    def warnings(self) -> List[str]:
        """A line for each type of records that are not drawn as GDI would, and for damage."""
        report = self.report
        lines = []
        if report["verdict"] == "damaged":
            end = report["end"]
            lines.append(f"damaged: {end['reason']} at offset {end['offset']}")
            for place in report.get("damaged", ()):
                lines.append(f"damaged: {place['bytes']} bytes at offset {place['offset']}")
        for line in report["records"]:
            if line["outcome"] in ("skipped", "approximated") and line["weight"] != "hint":
                lines.append(f"{line['name']}: {line['count']} {line['outcome']}, {line['reason']}")
        return lines


def convert(
    metafile: Union[bytes, bytearray, memoryview],
    *,
    width: float = 0,
    height: float = 0,
    scale: float = 1,
    text: str = "characters",
    source: str = "best",
    id_prefix: str = "",
    limit: float = 300,
) -> Picture:
    """Draws a metafile, also one that gzip has packed, as GDI would.

    Other threads of Python run meanwhile.

    width, height  of the document in CSS pixels; with one of them, the other follows
    scale          of the natural size, where neither is given
    text           what letters become: "characters", or "outlines", which look the same everywhere
    source         of a metafile with several pictures: "best"; "wmf", although it holds an EMF;
                   "emf", although it holds EMF+ records
    id_prefix      what ids begin with; by default made of the metafile's bytes
    limit          of the document in millions of bytes; what does not fit is not drawn, and the
                   report says so

    Raises NotAMetafile, BadOptions, MemoryError or, for a fault of the library, Error.
    """
    if text not in _TEXTS or source not in _SOURCES:
        raise BadOptions(f"no such choice: {text!r}, {source!r}")
    data = metafile if isinstance(metafile, bytes) else bytes(metafile)
    options = _library.Options(
        ctypes.sizeof(_library.Options), width, height, scale, id_prefix.encode() or None,
        _TEXTS[text], _SOURCES[source], limit)
    handle = _lib.svgtool_draw(data, len(data), ctypes.byref(options))
    error = _lib.svgtool_picture_error(handle)
    if error == 0:
        return Picture(handle)
    _lib.svgtool_picture_free(handle)
    raise _EXCEPTIONS.get(error, Error)(_lib.svgtool_error_text(error).decode())


def version() -> str:
    """The version of the library that draws."""
    return _lib.svgtool_version().decode()
