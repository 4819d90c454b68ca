#!/usr/bin/env python3
"""What the compiler cannot check in the sources: which room sees which, where the platform may show, and wording.

Prints file:line: complaint, and exits with 1 when there is any.
"""
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parents[1]

# A room includes only itself and what stands behind it.
ROOMS = ["startup", "console", "panel", "maintenance", "repair", "mail", "transfer", "controls", "system", "platform"]

# Only here may the platform itself be seen.
PLATFORM = re.compile(r"(src/(platform|controls)/win32|tools|tests/windows|bench/windows)/")
PLATFORM_USE = re.compile(r"#\s*include\s*<(windows|win\w+|shl\w+|sh\w*obj|ole\w*|comm\w*|tlhelp32|wininet|urlmon|aclapi)\.h>|\b_WIN32\b", re.I)
# Large, or not there with the compiler's win32 thread model.
HEAVY = re.compile(r"#\s*include\s*<(iostream|fstream|sstream|iomanip|regex|filesystem|thread|mutex|future|condition_variable)>")

# Written so that the patterns do not find themselves.
WORDING = [
    (re.compile(r"\b(the s[p]ec\b|s[p]ec\.md|s[p]ecification|Pa[r]ts? [0-9]+\.[0-9]+)"), "stands on its own, no pointing at other papers"),
    (re.compile(r"\b(TO[D]O|FIX[M]E|XX[X]|HA[C]K)\b|not (yet )?imple[m]ented"), "left open"),
    (re.compile(r"GTEST_[S]KIP|\bDISABLE[D]_"), "a test switched off"),
    (re.compile(r"(?<![\w.])/(wo[r]k|ro[o]t)/"), "a path of one machine"),
]
TEXT = {".cpp", ".h", ".py", ".sh", ".md", ".cmake", ".txt", ".json", ".rc", ".nsi", ".nsh", ".ini", ".manifest", ""}
SKIP = {".git", "build", "out", "__pycache__"}


def lines():
    for file in sorted(ROOT.rglob("*")):
        name = file.relative_to(ROOT)
        if SKIP.isdisjoint(name.parts) and file.suffix in TEXT and file.is_file():
            for number, line in enumerate(file.read_text("utf-8", "replace").splitlines(), 1):
                yield name.as_posix(), number, line


def complaints(name, line):
    room = name.split("/")[1] if name.startswith("src/") else None
    if name.endswith((".cpp", ".h")):
        if (used := PLATFORM_USE.search(line)) and not PLATFORM.match(name):
            yield f"the platform shows: {used[0]}"
        if name.startswith(("src/", "tools/")) and (used := HEAVY.search(line)):
            yield f"too heavy for the product: {used[0]}"
    if room and (include := re.match(r'\s*#\s*include\s*"([^"/]+)/', line)):
        if include[1] not in ROOMS:
            yield f"no such room: {include[1]}"
        elif room in ROOMS and ROOMS.index(include[1]) < ROOMS.index(room):
            yield f"{room} may not see {include[1]}"
    for pattern, why in WORDING:
        if found := pattern.search(line):
            yield f'"{found[0]}": {why}'


def main():
    bad = 0
    for name, number, line in lines():
        for complaint in complaints(name, line):
            print(f"{name}:{number}: {complaint}")
            bad += 1
    for folder in (ROOT / "src").iterdir():
        if folder.name not in ROOMS:
            print(f"src/{folder.name}: no such room; the order is {' > '.join(ROOMS)}")
            bad += 1
    sys.exit(bad > 0)


main()
