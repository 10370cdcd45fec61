"""Prints what the tool takes to start, and to convert forty small files, as a table in Markdown.

usage: bench_start.py BUILD [RUNS]      BUILD: a build folder with the tool and the benchmarks

CPU time of processes of their own, the least and the median of runs by turns: what else the machine
does can only add to it.
"""

import json
import os
import pathlib
import statistics
import subprocess
import sys
import tempfile

ROOT = pathlib.Path(__file__).resolve().parent.parent


def cpu_time(command):
    """Milliseconds of a process, its own and the system's for it."""
    with open(os.devnull, "wb") as nowhere:
        process = subprocess.Popen(command, stdout=nowhere, stderr=nowhere)
        _, status, usage = os.wait4(process.pid, 0)
        process.returncode = os.waitstatus_to_exitcode(status)
    if process.returncode != 0:
        sys.exit(f"bench_start: {command[0]} ends with {process.returncode}")
    return (usage.ru_utime + usage.ru_stime) * 1000


def small_files(count):
    """The smallest sound files of the corpus."""
    files = [path for kind in ("emf", "wmf")
             for path in ROOT.parent.joinpath("shared/corpus", kind).rglob(f"*.{kind}")]
    return sorted(files, key=lambda path: (path.stat().st_size, str(path)))[:count]


def conversions(build, files):
    """Milliseconds of the same conversions within one process that has made them before."""
    command = [f"{build}/bench/conversion_benchmark", "--benchmark_filter=^picture small files",
               "--benchmark_format=json", "--benchmark_repetitions=5"]
    result = subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.DEVNULL, check=True)
    runs = json.loads(result.stdout)["benchmarks"]
    if runs[0]["files"] != len(files):
        sys.exit("bench_start: the benchmark has other files")
    return min(run["cpu_time"] for run in runs if run["run_type"] == "iteration")


def main(build, runs="50"):
    tool, files = f"{build}/cli/metafile2svg", small_files(40)
    with tempfile.TemporaryDirectory() as folder:
        commands = {
            "an empty Qt Core program": [f"{build}/bench/empty_program"],
            "`metafile2svg --version`": [tool, "--version"],
            "`metafile2svg` of a small file": [tool, "--force", files[-1], "-o",
                                               f"{folder}/one.svg"],
            "`metafile2svg` of 40 small files": [tool, "--force", *files, "-o", f"{folder}/"],
        }
        times = {name: [] for name in commands}
        for _ in range(int(runs)):
            for name, command in commands.items():
                times[name].append(cpu_time(command))
    empty = min(times["an empty Qt Core program"])
    print("| program | least ms | median ms | least to the empty program |\n|---|---:|---:|---:|")
    for name, each in times.items():
        print(f"| {name} | {min(each):.2f} | {statistics.median(each):.2f} "
              f"| {min(each) / empty:.2f} |")
    print(f"| the 40 conversions within a process | {conversions(build, files):.2f} | | |")


if __name__ == "__main__":
    main(*sys.argv[1:])
