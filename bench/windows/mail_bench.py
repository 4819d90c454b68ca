#!/usr/bin/env python3
"""A mail with an attachment of 10 MB by SendMail.exe on a Wine PC against curl, to one server on loopback. What a mail
without attachment takes, which is mostly the start of the program, is counted apart."""
import pathlib
import random
import statistics
import subprocess
import sys
import time

ROOT = pathlib.Path(__file__).resolve().parents[2]
sys.path += [str(ROOT / "tests/windows"), str(ROOT / "tests/servers")]
from harness import Pc  # noqa: E402
from smtp import MailServer  # noqa: E402


def median(action, rounds=7):
    times = []
    for _ in range(rounds):
        begin = time.monotonic()
        action()
        times.append((time.monotonic() - begin) * 1000)
    return statistics.median(times)


def ours(pc, *attached):
    fields = ["server", "127.0.0.1", "port", "2525", "from", "a@example.org", "to", "b@example.org", "subject", "Help",
              "text", "text", *(part for path in attached for part in ("attach", path)), "end", "1"]
    (pc.drive / "driver/request").write_bytes("".join(field + "\0" for field in fields).encode())
    code, output = pc.run(r'cmd /c "C:\Brevanta\SendMail.exe < C:\driver\request"', 120)
    assert code == 0, output


def curl(*attached):
    files = [part for path in attached for part in ("-F", f"file=@{path};encoder=base64")]
    subprocess.run(["curl", "-sS", "smtp://127.0.0.1:2525", "--mail-from", "a@example.org", "--mail-rcpt", "b@example.org",
                    "-F", "=text;type=text/plain", *files], check=True, timeout=120)


def main():
    pc = Pc(traced=False)
    try:
        pc.install("SendMail.exe")
        (pc.drive / "large.bin").write_bytes(random.Random(1).randbytes(10_000_000))
        with MailServer(2525) as server:
            start, bare_start = median(lambda: ours(pc)), median(curl)
            whole, bare = median(lambda: ours(pc, r"C:\large.bin")), median(lambda: curl(pc.drive / "large.bin"))
            sizes = {len(envelope.original_content) // 100_000 for envelope in server.envelopes}
        assert sizes == {0, 136}, sizes  # both sent it all
        print(f"mail without attachment: {start:.0f} ms, curl {bare_start:.0f} ms")
        mine, theirs, limit = whole - start, bare - bare_start, 1.25
        print(f"{'mail of 10 MB, the start taken off, ms':<44} {mine:12.2f} {theirs:12.2f} {mine / theirs:8.2f} {limit:8.2f} "
              + ("OVER" if mine > theirs * limit else ""))
    finally:
        pc.close()


main()
