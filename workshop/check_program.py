#!/usr/bin/env python3
"""check_program.py PROGRAM.exe...: will it load on Windows XP, is it small, and does it keep the build machine to itself?

Wine cannot prove that a program loads on an old Windows: it has all functions of the new ones. So every imported name
must stand in allowed_imports.txt, which holds only names that Windows XP has; newer ones are looked up at run time.
"""
import pathlib
import re
import subprocess
import sys

HERE = pathlib.Path(__file__).resolve().parent
LIMITS = {"Brevanta.exe": 1_500_000}  # bytes
OTHER_LIMIT = 2_000_000
NEWEST_SYSTEM = (5, 1)  # in the header: Windows XP


def allowed_imports():
    """{library.dll: {name}} from lines of names under the library's."""
    allowed = {}
    for line in (HERE / "allowed_imports.txt").read_text().splitlines():
        if line.startswith("["):
            names = allowed.setdefault(line.strip("[]"), set())
        elif line and not line.startswith("#"):
            names.update(line.split())
    return allowed


def complaints(file):
    allowed = allowed_imports()
    dump = subprocess.run(["i686-w64-mingw32-objdump", "-p", file], capture_output=True, text=True, check=True).stdout
    library = ""
    for line in dump.splitlines():
        if found := re.match(r"\s*DLL Name: (\S+)", line):
            library = found[1].lower()
        elif (found := re.match(r"\t[0-9a-f]+\t\s*(\d+)\s+(\S+)", line)) and found[2] not in allowed.get(library, ()):
            yield f"imports {found[2]} of {library}, which is not in workshop/allowed_imports.txt"
    for field in ("OSystemVersion", "SubsystemVersion"):
        asked = tuple(int(re.search(rf"^{part}{field}\s+(\d+)", dump, re.M)[1]) for part in ("Major", "Minor"))
        if asked > NEWEST_SYSTEM:
            yield f"{field} asks for Windows {asked[0]}.{asked[1]}"
    content = file.read_bytes()
    limit = LIMITS.get(file.name, OTHER_LIMIT)
    if len(content) > limit:
        yield f"{len(content)} bytes, more than {limit}"
    if found := re.search(rb"(/home/|/usr/src/|" + re.escape(str(HERE.parent).encode()) + rb"/)[\w./-]*", content):
        yield f"holds a path of the build machine: {found[0].decode()}"


def main():
    found = [f"{file}: {complaint}" for file in map(pathlib.Path, sys.argv[1:]) for complaint in complaints(file)]
    for line in found:
        print(line)
    sys.exit(bool(found))


main()
