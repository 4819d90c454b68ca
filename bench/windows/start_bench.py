#!/usr/bin/env python3
"""The panel's start on a Wine PC, and the memory it holds when idle, against a bare window with as many controls."""
import pathlib
import re
import shutil
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path.append(str(ROOT / "tests/windows"))
from harness import BUILD, Pc, wait  # noqa: E402


def main():
    pc = Pc(traced=False)
    try:
        pc.install()
        shutil.copy(BUILD / "start_bench.exe", pc.folder)
        code, output = pc.run(r"C:\Brevanta\start_bench.exe", limit=300)
        print(output, end="", flush=True)
        if code:
            sys.exit(code)
        controls = re.search(r"controls: (\d+)", output)[1]
        panel = pc.start()
        form = pc.form("frmMain")
        wait(lambda: form.text("lblUAC") != "---" and form.text("txtStatus") == "", "the PC to be measured", 60)
        bare = pc.start(controls, r"C:\Brevanta\start_bench.exe")
        time.sleep(5)
        ours = panel.held()[2] / 1000
        theirs = bare.held("start_bench.exe")[2] / 1000
        print(f"private memory touched, idle: panel {ours:.2f} MB; bare with {controls} controls {theirs:.2f} MB"
              f" (limit: {theirs + 2:.2f})")
    finally:
        pc.close()


main()
