"""The archive on a cluster: 2,000 files, two workers, one of them killed in the middle."""

import collections
import csv
import json
import os
import pathlib
import signal
import subprocess
import sys
import tempfile
import time
import unittest

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path[:0] = [str(ROOT / "bindings/python")]
os.environ["PYTHONPATH"] = sys.path[0]
import svgtool  # noqa: E402

COUNT = 2000


def children(pid):
    """Gives the processes below one, by what /proc says."""
    parents = {}
    for path in pathlib.Path("/proc").glob("[0-9]*/stat"):
        try:
            text = path.read_text()
        except OSError:
            continue
        parents[int(path.parent.name)] = int(text.rpartition(")")[2].split()[1])
    below = [pid]
    for each in below:
        below += [child for child, parent in parents.items() if parent == each]
    return below[1:]


class Cluster(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.work = pathlib.Path(folder.name)
        samples = [path.read_bytes() for path in sorted((ROOT / "samples").glob("*.[ew]mf"))]
        samples += [samples[0][:2000], b"no metafile, but a text"]
        for i in range(COUNT):
            path = self.work / "in" / f"{i % 7}" / f"{i} ä.{'EMF' if i % 2 else 'wmf'}"
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_bytes(samples[i % len(samples)])

    def start(self):
        return subprocess.Popen(
            [sys.executable, ROOT / "samples/archive/cluster.py", "--workers=2", "--chunk=100",
             "in", "out", "table.csv"], cwd=self.work, stdout=subprocess.PIPE,
            stderr=subprocess.DEVNULL, text=True)

    def journal(self):
        entries = []
        for path in (self.work / "out/.journal").glob("*.jsonl"):
            for line in path.read_text().split("\n"):
                if line.endswith("}"):
                    entries.append(json.loads(line))
        return entries

    def await_done(self, run, count):
        while sum("verdict" in entry for entry in self.journal()) < count:
            self.assertIsNone(run.poll(), "it has ended")
            time.sleep(0.02)

    def worker(self, run):
        """A process of the run that converts."""
        found = [pid for pid in children(run.pid)
                 if b"spawn_main" in pathlib.Path(f"/proc/{pid}/cmdline").read_bytes()]
        return found[0]

    def test_survives(self):
        run = self.start()
        self.await_done(run, COUNT // 4)
        os.kill(self.worker(run), signal.SIGKILL)
        self.await_done(run, COUNT // 2)
        # Then all of it dies, and is started again.
        for pid in [run.pid, *children(run.pid)]:
            try:
                os.kill(pid, signal.SIGKILL)
            except ProcessLookupError:
                pass
        run.communicate()
        before = sum("verdict" in entry for entry in self.journal())
        self.assertLess(before, COUNT)
        output, _ = self.start().communicate()
        self.assertTrue(output.splitlines()[-1].startswith(f"{COUNT} files: "), output)

        with open(self.work / "table.csv", newline="", encoding="utf-8") as file:
            rows = list(csv.DictReader(file))
        self.assertEqual(len(rows), COUNT)
        names = {str(path.relative_to(self.work / "in"))
                 for path in (self.work / "in").rglob("*.*")}
        self.assertEqual({row["file"] for row in rows}, names)
        for row in rows:
            metafile = (self.work / "in" / row["file"]).read_bytes()
            document = self.work / "out" / (row["file"] + ".svg")
            if row["verdict"] == "refused":
                self.assertFalse(document.exists())
            else:
                expected = svgtool.convert(metafile)
                self.assertEqual((row["verdict"], document.read_text()),
                                 (expected.verdict, expected.svg))
        # What was done was not done again: only what the three that died had begun.
        times = collections.Counter(entry["file"] for entry in self.journal()
                                    if "verdict" not in entry)
        self.assertLessEqual(sum(times.values()), COUNT + 3)
        finished = collections.Counter(entry["file"] for entry in self.journal()
                                       if "verdict" in entry)
        self.assertEqual(set(finished.values()), {1})
        self.assertEqual(list((self.work / "out").rglob("*.part")), [])

    def test_leaves_out_what_kills(self):
        sys.path.append(str(ROOT / "samples/archive"))
        import cluster
        journal = self.work / "out/.journal/00000003.jsonl"
        journal.parent.mkdir(parents=True)
        begun = '{"file": "0/0 ä.wmf"}\n'
        journal.write_text(begun + begun + '{"file": "1/1')
        cluster.convert_chunk(self.work / "in", self.work / "out", 3, ["0/0 ä.wmf", "1/1 ä.EMF"])
        rows, _ = cluster.read_journal(journal)
        self.assertEqual([rows[name]["verdict"] for name in ("0/0 ä.wmf", "1/1 ä.EMF")],
                         ["crashed", "complete"])


unittest.main()
