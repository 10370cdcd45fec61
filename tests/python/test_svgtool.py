"""The Python package, as its users have it."""

import concurrent.futures
import doctest
import gzip
import os
import pathlib
import subprocess
import sys
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.insert(0, str(ROOT / "bindings/python"))
import svgtool  # noqa: E402

CHART = (ROOT / "samples/chart.emf").read_bytes()


class Convert(unittest.TestCase):
    def test_documents_are_those_of_the_tool(self):
        for options, arguments in (
            ({}, []),
            ({"width": 100, "id_prefix": "own-"}, ["--width", "100", "--id-prefix", "own-"]),
            ({"limit": 0.01}, ["--limit", "0.01"]),
            ({"scale": 2, "text": "outlines", "source": "wmf"},
             ["--scale", "2", "--text", "outlines", "--prefer", "wmf"]),
        ):
            drawn = subprocess.run([os.environ["TOOL"], *arguments, "-"], input=CHART, check=True,
                                   capture_output=True).stdout
            self.assertEqual(svgtool.convert(CHART, **options).svg.encode(), drawn)

    def test_takes_all_kinds_of_bytes(self):
        expected = svgtool.convert(CHART).svg
        for kind in (bytearray, memoryview, gzip.compress):
            self.assertEqual(len(svgtool.convert(kind(CHART)).svg), len(expected))

    def test_errors_are_exceptions(self):
        for kind, data, options in (
            (svgtool.NotAMetafile, b"", {}),
            (svgtool.NotAMetafile, gzip.compress(CHART)[:99], {}),
            (svgtool.BadOptions, CHART, {"width": -1}),
            (svgtool.BadOptions, CHART, {"id_prefix": "a b"}),
            (svgtool.BadOptions, CHART, {"text": "pictures"}),
            (TypeError, "text", {}),
        ):
            with self.assertRaises(kind):
                svgtool.convert(data, **options)

    def test_what_a_picture_lacks(self):
        record = CHART.index(b"\x2b\x00\x00\x00\x18\x00\x00\x00")  # EMR_RECTANGLE
        lossy = svgtool.convert(CHART[:record] + b"\xc8" + CHART[record + 1:])
        self.assertEqual(lossy.verdict, "lost")
        self.assertEqual(lossy.warnings, ["EMR 200: 1 skipped, its type is not known"])
        self.assertIs(lossy.report, lossy.report)

    def test_threads(self):
        expected = svgtool.convert(CHART).svg
        with concurrent.futures.ThreadPoolExecutor(8) as pool:
            for picture in pool.map(svgtool.convert, [CHART] * 200):
                self.assertEqual(picture.svg, expected)
                self.assertEqual(picture.report["verdict"], "complete")


def load_tests(_loader, tests, _pattern):
    os.chdir(ROOT)
    tests.addTests(doctest.DocFileSuite(str(ROOT / "bindings/python/README.md"),
                                        module_relative=False))
    return tests


unittest.main()
