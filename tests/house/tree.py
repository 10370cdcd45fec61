#!/usr/bin/env python3
"""Looks at the tree at ROOT: whether includes keep to the layers, and the documentation to files.

usage: tree.py layers ROOT   Compares every include with LAYERS.
       tree.py selftest      Shows that it sees what it is there to see, one fault at a time.
       tree.py docs ROOT     A fenced block behind a line "`FILE`:" is that file, and the files that
                             links name exist.

Prints a line per finding and ends with status 1 if there is one.
"""
import pathlib
import re
import sys
import tempfile

# What a folder may include: itself, what it names, and whatever those may include.
LAYERS = {"logging": [], "records": ["logging"], "platform": ["logging"], "geometry": ["records"],
          "style": ["records", "platform"], "svg": ["style", "geometry"], "emf": ["svg"],
          "wmf": ["svg"], "svgtool": ["emf", "wmf"]}
# Programs know the installed headers and nothing else; the tool reports more than hosts can ask,
# so it links the static core and knows one header more.
INSTALLED = ["svgtool/SVGTool.h", "svg/SVGDisplay.h"]
PROGRAMS = {"samples": INSTALLED, "cli": INSTALLED + ["svgtool/SVGInspect.h"]}
FREE = ["tests", "fuzz", "bench"]  # may include anything
NO_CODE = "docs|scripts|cmake|build.*|out"


def reach(folder):
    return {folder}.union(*map(reach, LAYERS[folder]))


def include_finding(root, file, folder, quoted, name):
    """Gives what is wrong with an include, or None; and whether a file of ours is included."""
    if name.lower() == "windows.h" and not (folder == "platform" and file.suffix == ".cpp"):
        return f"{name} outside platform/*.cpp", False
    if folder in FREE:
        return None, False
    if ".." in name:
        return f"{name} hides its folder", False
    ours = folder if (file.parent / name).exists() else name.split("/")[0]
    if name == "CLogSystem.h":
        ours = "logging"
    elif ours == name or not (root / ours).exists():
        return f'"{name}" is no file of the tree' if quoted else None, False
    if folder in PROGRAMS:
        allowed = ours == folder or name in PROGRAMS[folder]
        return None if allowed else f"a program includes {name}, not an installed header", True
    return None if ours in reach(folder) else f"{folder}/ may not include {name}", True


def layers(root):
    findings, seen = [], 0
    for file in sorted(root.glob("*/**/*")):
        folder = file.relative_to(root).parts[0]
        if file.suffix not in (".h", ".cpp", ".c") or re.fullmatch(NO_CODE, folder):
            continue
        if folder not in [*LAYERS, *PROGRAMS, *FREE]:
            findings.append(f"{folder}/ has sources and no layer")
            continue
        for number, line in enumerate(file.read_text().splitlines(), 1):
            place = f"{file.relative_to(root)}:{number}: "
            if re.match(r"\s*#.*QT_VERSION", line) and file != root / "platform/QtCompat.h":
                findings.append(place + "QT_VERSION outside platform/QtCompat.h")
            if include := re.match(r'\s*#\s*include\s*(["<])([^">]*)', line):
                finding, is_ours = include_finding(root, file, folder, include[1] == '"', include[2])
                seen += is_ours
                findings += [place + finding] if finding else []
    return findings, seen


GOOD_TREE = {"logging/CLogSystem.h": "", "records/Bytes.h": "#include <CLogSystem.h>",
             "platform/QtCompat.h": "#if QT_VERSION >= 6", "svg/SVGDisplay.h": "",
             "style/StyleMgr.h": '#include "records/Bytes.h"', "wmf/Wmf.h": "",
             "svg/Writer.h": '#include "style/StyleMgr.h"', "emf/Emf.h": '#include "svg/Writer.h"',
             "svgtool/SVGTool.h": "#include <QString>", "svgtool/SVGInspect.h": "",
             "emf/Good.cpp": '#include "Emf.h"\n#include "records/Bytes.h"',
             "platform/Gdi.cpp": "#include <windows.h>",
             "cli/main.cpp": '#include <svgtool/SVGTool.h>\n#include "svgtool/SVGInspect.h"'}
FAULTS = [
    ("samples/main.cpp", '#include "svgtool/SVGInspect.h"', "not an installed header"),
    ("cli/main.cpp", '#include "svg/Writer.h"', "not an installed header"),
    ("cli/main.cpp", "#include <CLogSystem.h>", "not an installed header"),
    ("emf/Bad.h", "#include <wmf/Wmf.h>", "emf/ may not include wmf/Wmf.h"),
    ("wmf/Bad.h", '  #  include "emf/Emf.h" // why', "wmf/ may not include emf/Emf.h"),
    ("records/Bad.h", '#include "../style/StyleMgr.h"', "hides its folder"),
    ("emf/Bad.h", '#include "nowhere/Missing.h"', "no file of the tree"),
    ("platform/Gdi.h", "#include <Windows.h>", "outside platform"),
    ("tests/Gdi.cpp", "#include <windows.h>", "outside platform"),
    ("svg/Bad.cpp", "#ifdef QT_VERSION_MAJOR", "outside platform/QtCompat.h"),
    ("extra/New.cpp", "", "has sources and no layer"),
]


def selftest():
    for path, text, wanted in [("wmf/Good.h", "", None), *FAULTS]:
        with tempfile.TemporaryDirectory() as root:
            for name, content in {**GOOD_TREE, path: text}.items():
                pathlib.Path(root, name).parent.mkdir(exist_ok=True)
                pathlib.Path(root, name).write_text(content)
            findings, _ = layers(pathlib.Path(root))
        if len(findings) != (wanted is not None) or wanted and wanted not in findings[0]:
            yield f"{path} with {text}: {findings}"


def docs(root):
    findings, seen = [], {"blocks": 0, "links": 0}
    for page in [*root.glob("*.md"), *root.glob("docs/**/*.md")]:
        text = page.read_text()
        for name, block in re.findall(r"^`([^`\n]+)`:\n\s*```.*\n((?:.*\n)*?)```$", text, re.M):
            seen["blocks"] += 1
            if block != (root / name).read_text():
                findings.append(f"{page}: the block of {name} differs from the file")
        for target in re.findall(r"\]\(([^)#:]+)(?:#[^)]*)?\)", text):
            seen["links"] += 1
            if not (page.parent / target).exists():
                findings.append(f"{page}: there is no {target}")
    return findings + [f"too few {kind}: {n}" for kind, n in seen.items() if n < 4], seen


def main():
    mode, *root = sys.argv[1:]
    if mode == "selftest":
        findings, seen = list(selftest()), f"{len(FAULTS)} faults tried"
    else:
        findings, seen = {"layers": layers, "docs": docs}[mode](pathlib.Path(*root))
    print(*("FOUND: " + finding for finding in findings), f"checked: {seen}", sep="\n")
    return 1 if findings or not seen else 0


sys.exit(main())
