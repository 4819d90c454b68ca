#!/usr/bin/env python3
"""Transfers on a Wine PC against the bare calls, and for the record against curl in the same network; then a whole
/updateconfig and how much of it is waiting."""
import io
import pathlib
import shutil
import subprocess
import sys
import time
import zipfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path += [str(ROOT / "tests/windows"), str(ROOT / "tests/servers")]
from harness import BUILD, Pc  # noqa: E402
from loopback import FtpServer, HttpServer  # noqa: E402

SIZES = {"1": 1_000_000, "50": 50_000_000}


def record(what, action, rounds=3):
    times = []
    for _ in range(rounds):
        begin = time.monotonic()
        action()
        times.append((time.monotonic() - begin) * 1000)
    print(f"{what:<44} {sorted(times)[rounds // 2]:12.2f}", flush=True)


def curl(*arguments):
    subprocess.run(["curl", "-sSf", "-o", "/dev/null", *arguments], check=True, timeout=120)


def settings_update(pc):
    packed = io.BytesIO()
    with zipfile.ZipFile(packed, "w", zipfile.ZIP_DEFLATED) as file:
        file.writestr("Brevanta.ini", "[Branding]\r\nAppName=New\r\n[ScheduledTasks]\r\nUpdateConfig=1\r\n")
    pc.write_settings("""
[ScheduledTasks]
UpdateConfigLoc=http://update.brevanta.example/set.zip
[Confirmations]
ConvertedCustomApps=1
""")
    asked = []

    def reply(_):
        asked.append(time.monotonic())
        return packed.getvalue()

    with HttpServer({"/set.zip": reply}):
        begin = time.monotonic()
        pc.start("/updateconfig").wait(60)
        whole = (time.monotonic() - begin) * 1000
    print(f"/updateconfig: {whole:.0f} ms, {(asked[0] - begin) * 1000:.0f} of them until the server was asked")
    tasks = 6  # three update tasks deleted or made, three of restore points deleted
    begin = time.monotonic()
    for _ in range(tasks):
        pc.run('schtasks.exe /delete /f /tn "none"')
    bare = (time.monotonic() - begin) * 1000
    print(f"of these the program waits 100 ms for the form's timer, 55 in the download's loop, and for {tasks} runs of"
          f" schtasks, which take {bare:.0f} ms without us")


def main():
    pc = Pc()
    try:
        pc.install("Brevanta.exe")
        shutil.copy(BUILD / "transfer_bench.exe", pc.folder)
        area = pc.session / "area"
        (area / "Brevanta").mkdir(parents=True)
        with HttpServer({"/" + name: bytes(size) for name, size in SIZES.items()}), FtpServer(area):
            code, output = pc.run(r"C:\Brevanta\transfer_bench.exe", limit=500)
            print(output, end="", flush=True)
            for name in SIZES:
                record(f"curl: download {name} MB, ms", lambda: curl(f"http://127.0.0.1/{name}"))
                (area / "file.bin").write_bytes(bytes(SIZES[name]))
                record(f"curl: FTP download {name} MB, ms", lambda: curl("-u", "tech:secret", "ftp://127.0.0.1/file.bin"))
                record(f"curl: FTP upload {name} MB, ms",
                       lambda: curl("-u", "tech:secret", "-T", str(area / "file.bin"), "ftp://127.0.0.1/up.bin"))
        if not code:
            settings_update(pc)
        sys.exit(code)
    finally:
        pc.close()


main()
