"""The C interface of libSVGToolPicture: what svgtool/picture.h declares, for ctypes."""

from __future__ import annotations

import ctypes
import os
from ctypes import c_char_p, c_double, c_int, c_int32, c_size_t, c_void_p

NAME = "libSVGToolPicture.so.0.1"


class Options(ctypes.Structure):
    """svgtool_options."""

    _fields_ = [
        ("size", c_size_t),
        ("width", c_double),
        ("height", c_double),
        ("scale", c_double),
        ("id_prefix", c_char_p),
        ("text", c_int32),
        ("source", c_int32),
        ("limit", c_double),
    ]


_FUNCTIONS = {
    "svgtool_version": (c_char_p,),
    "svgtool_draw": (c_void_p, c_void_p, c_size_t, ctypes.POINTER(Options)),
    "svgtool_picture_free": (None, c_void_p),
    "svgtool_picture_error": (c_int, c_void_p),
    "svgtool_picture_verdict": (c_int, c_void_p),
    "svgtool_picture_document": (c_void_p, c_void_p, ctypes.POINTER(c_size_t)),
    "svgtool_picture_width": (c_double, c_void_p),
    "svgtool_picture_height": (c_double, c_void_p),
    "svgtool_picture_report": (c_void_p, c_void_p, ctypes.POINTER(c_size_t)),
    "svgtool_error_text": (c_char_p, c_int),
    "svgtool_verdict_text": (c_char_p, c_int),
}


def load() -> ctypes.CDLL:
    """Gives the library: the one that SVGTOOL_LIBRARY names, or the one that is installed.

    Functions of a CDLL let other threads of Python run while they are called.
    """
    library = ctypes.CDLL(os.environ.get("SVGTOOL_LIBRARY") or NAME)
    for name, (result, *arguments) in _FUNCTIONS.items():
        function = getattr(library, name)
        function.restype = result
        function.argtypes = arguments
    return library
