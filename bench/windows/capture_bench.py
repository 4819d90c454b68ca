#!/usr/bin/env python3
"""The picture of the screen on screens of two sizes."""
import pathlib
import shutil
import sys

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.append(str(ROOT / "tests/windows"))
from harness import BUILD, Pc  # noqa: E402

for size in "1920x1080", "3840x2160":
    pc = Pc(screen=size, traced=False)
    try:
        shutil.copy(BUILD / "capture_bench.exe", pc.folder)
        code, output = pc.run(r"C:\Brevanta\capture_bench.exe", limit=300)
        print(output, end="", flush=True)
        if code:
            sys.exit(code)
    finally:
        pc.close()
