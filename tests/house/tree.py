#!/usr/bin/env python3
"""Looks at the tree at ROOT: whether includes keep to the layers, and the documentation to files.

usage: tree.py layers ROOT   Compares every include with the table of docs/architecture.md.
       tree.py selftest      Shows that it sees what it is there to see, one fault at a time.
       tree.py docs ROOT     A fenced block behind a line "`FILE`:" is that file; the files that
                             links name exist, and so do `path/to/files` and `camelCaseNames`.

Prints a line per finding and ends with status 1 if there is one.
"""
import pathlib
import re
import sys
import tempfile

INSTALLED = {"svgtool/SVGTool.h": "exact/svgtool/SVGTool.h",
             "svgtool/picture.h": "picture/api/picture.h",
             "svgtool/picture.hpp": "picture/api/picture.hpp"}
NO_CODE = "docs|scripts|cmake|build.*|out"
WINDOWS_H = ("_Gdi.cpp", "_Windows.cpp")
QT_VERSION_H = "QtText.h"


def table_of(root):
    """Gives the table of docs/architecture.md: what each folder may include."""
    page = (root / "docs/architecture.md").read_text()
    return {folder: allowed
            for folders, allowed in re.findall(r"^\| (`[^|]*/`) \|[^|]*\| ([^|]*) \|$", page, re.M)
            for folder in re.findall(r"`([^`]*)/`", folders)}


def folder_of(table, path):
    """Gives the row that a path lies below, the longest of them; None for none."""
    return max((row for row in table if path.startswith(row + "/")), key=len, default=None)


def reach(table, folder):
    """Gives all folders and headers that a folder may include."""
    return {folder}.union(*(reach(table, row)
                            for row in re.findall(r"`([^`]*?)/?`", table.get(folder, ""))))


def include_finding(root, table, file, quoted, name):
    """Gives what is wrong with an include, or None."""
    folder = folder_of(table, str(file.relative_to(root)))
    if name.lower() == "windows.h" and not file.name.endswith(WINDOWS_H):
        return f"{name} outside {' and '.join(WINDOWS_H)} files"
    if folder.startswith(("core", "picture")) and re.match(r"Q[A-Z]|Qt", name):
        return f"{name} of Qt below {folder}/"
    if table[folder] == "anything":
        return None
    if ".." in name:
        return f"{name} hides its folder"
    path = "exact/logging/" + name if name == "CLogSystem.h" else name
    if (file.parent / name).exists():
        path = str((file.parent / name).relative_to(root))
    elif name in INSTALLED:
        path = INSTALLED[name]
    ours = folder_of(table, path)
    if ours is None or not (root / path).exists():
        return f'"{name}" is no file of the tree' if quoted else None
    reached = reach(table, folder)
    if table[folder].startswith("installed headers"):
        reached |= {*INSTALLED.values()}
    return None if ours in reached or path in reached else f"{folder}/ may not include {name}"


def layers(root):
    findings, seen, table = [], 0, table_of(root)
    for file in sorted(root.glob("*/**/*")):
        path = str(file.relative_to(root))
        if file.suffix not in (".h", ".hpp", ".cpp", ".c") or re.match(f"({NO_CODE})/", path):
            continue
        if folder_of(table, path) is None:
            findings.append(f"{path} lies in no folder of the table")
            continue
        for number, line in enumerate(file.read_text().splitlines(), 1):
            place = f"{path}:{number}: "
            if re.match(r"\s*#.*QT_VERSION", line) and file.name != QT_VERSION_H:
                findings.append(place + f"QT_VERSION outside {QT_VERSION_H}")
            if include := re.match(r'\s*#\s*include\s*(["<])([^">]*)', line):
                finding = include_finding(root, table, file, include[1] == '"', include[2])
                findings += [place + finding] if finding else []
                seen += 1
    return findings, seen


GOOD_TREE = {"docs/architecture.md": """
| `core/base/` | | nothing |
| `exact/logging/` | | `core/base/` |
| `exact/svg/` | | `exact/logging/` |
| `exact/emf/`, `exact/wmf/` | | `exact/svg/` |
| `exact/svgtool/` | | `exact/emf/` |
| `cli/` | | installed headers, `exact/svgtool/SVGInspect.h` |
| `samples/` | | installed headers |
| `tests/` | | anything |
""", "core/base/Bytes.h": "#include <cstdint>", "core/base/FontEngine_Gdi.cpp": "#include <windows.h>",
             "exact/logging/CLogSystem.h": "#if 1", "exact/svg/QtText.h": "#if QT_VERSION >= 6",
             "exact/svg/Writer.h": '#include "core/base/Bytes.h"\n#include <CLogSystem.h>',
             "exact/emf/Emf.h": '#include "exact/svg/Writer.h"', "exact/wmf/Wmf.h": "",
             "exact/emf/Good.cpp": '#include "Emf.h"',
             "exact/svgtool/SVGTool.h": "#include <QString>", "exact/svgtool/SVGInspect.h": "",
             "cli/main.cpp":
             '#include <svgtool/SVGTool.h>\n#include "exact/svgtool/SVGInspect.h"'}
FAULTS = [
    ("samples/main.cpp", '#include "exact/svgtool/SVGInspect.h"', "samples/ may not include"),
    ("cli/main.cpp", '#include "exact/svg/Writer.h"', "cli/ may not include"),
    ("exact/emf/Bad.h", '#include "exact/wmf/Wmf.h"', "exact/emf/ may not include"),
    ("core/base/Bad.h", '  #  include "exact/emf/Emf.h" // why', "core/base/ may not include"),
    ("core/base/Bad.h", "#include <QtGlobal>", "of Qt below core/base/"),
    ("core/base/Bad.h", '#include "../style/StyleMgr.h"', "hides its folder"),
    ("exact/emf/Bad.h", '#include "nowhere/Missing.h"', "no file of the tree"),
    ("core/base/Gdi.h", "#include <Windows.h>", "outside _Gdi.cpp and"),
    ("exact/svg/Bad.cpp", "#ifdef QT_VERSION_MAJOR", "outside QtText.h"),
    ("exact/New.cpp", "", "in no folder of the table"),
]


def selftest():
    for path, text, wanted in [("exact/wmf/Good.h", "", None), *FAULTS]:
        with tempfile.TemporaryDirectory() as root:
            for name, content in {**GOOD_TREE, path: text}.items():
                pathlib.Path(root, name).parent.mkdir(parents=True, exist_ok=True)
                pathlib.Path(root, name).write_text(content)
            findings, _ = layers(pathlib.Path(root))
        if len(findings) != (wanted is not None) or wanted and wanted not in findings[0]:
            yield f"{path} with {text}: {findings}"


def docs(root):
    findings, seen = [], {"blocks": 0, "links": 0, "names": 0}
    code = "".join(file.read_text() for folder in ("core", "exact", "picture", "cli", "fuzz", "cmake", "tests")
                   for file in root.glob(folder + "/**/*") if file.suffix in (".h", ".hpp", ".cpp", ".txt"))
    words = set(re.findall(r"\w+", code))
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
        for name in re.findall(r"`((?:[\w.-]+/)+\w*\.(?:h|hpp|cpp|md|sh|py|t|txt)|(?!Q[A-Z])\w*[a-z][A-Z]\w*)`",
                               text):
            seen["names"] += 1
            is_header = name in [*INSTALLED, "basic_logging/CLogSystem.h"]
            if not is_header and name not in words and not (root / name).exists():
                findings.append(f"{page}: there is no {name}")
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
