#!/usr/bin/env python3
"""The panel on a Wine PC with demo settings and nobody at the keyboard, or somebody.

demo.py run              with a display: leaves the panel up. Without: runs maintenance and says what it did.
demo.py shot ARGUMENTS   starts Brevanta.exe with these arguments, takes a picture and lists what stands on the forms.
demo.py program EXE      runs a console program and prints what it says.
"""
import os
import pathlib
import shutil
import sys

ROOT = pathlib.Path(__file__).resolve().parents[1]
sys.path.insert(0, str(ROOT / "tests/windows"))
from harness import NO, OK, OUT, Pc, YES, wait  # noqa: E402


def prepare(pc):
    """The panel with the demo branding, and two profiles with something to clean."""
    pc.install()
    for file in (ROOT / "resources/demo").glob("*"):
        shutil.copy(file, pc.folder)
    planted = []
    for profile in (pc.user, pc.drive / "users/Anna"):
        for number in range(20):
            file = profile / f"AppData/Local/Temp/old{number}.tmp"
            file.parent.mkdir(parents=True, exist_ok=True)
            file.write_bytes(bytes(50_000))
            planted.append(file)
    return planted


def run_with_display(pc):
    print("the panel is on your display; this command ends when it is closed", flush=True)
    print("exit code", pc.start().wait(limit=24 * 3600))


def run_alone(pc, planted):
    program = pc.start()
    form = pc.form(wait(lambda: next(iter(pc.forms()), None), "the panel's window"))
    print(f'window: {form.name}, "{form.title()}"')
    button = next((name for name, c in form.controls().items()
                   if name == "cmdMaint" or "aintenance" in c["text"] and c["visible"]), None)
    assert button, "no maintenance button on the form"
    print("picture:", pc.screenshot("panel"))
    form.click(button)
    cleaned = False
    while not cleaned:
        box = pc.box(limit=240)
        button = YES if YES in box.buttons else OK
        print(f'box: "{box.text}": {box.buttons.get(button, "closed")}')
        cleaned = "complete" in box.text
        if cleaned:
            print("picture:", pc.screenshot("maintenance"))
        box.answer(button if button in box.buttons else NO)
    removed = [file for file in planted if not file.exists()]
    print(f"removed {len(removed)} of {len(planted)} temporary files, {50_000 * len(removed)} bytes")
    form.close()
    print("exit code", program.wait())


def shot(pc, arguments):
    pc.start(arguments)
    wait(lambda: pc.forms() or pc.boxes(), "a window")
    wait(lambda: settled(pc), "the windows to settle")
    for name in pc.forms():
        print(f'{name}: "{pc.ask("text", name, "")}"')
        for control in pc.ask("dump", name, "")["controls"]:
            state = "".join(mark for mark, on in (("h", not control["visible"]), ("d", not control["enabled"]),
                                                  ("f", control["focus"]), ("t", control["tabStop"])) if on)
            print(f'  {control["name"]:24} {control["class"]:16} {str(control["rect"]):24} {state:4} {control["text"]!r}')
    for box in pc.boxes():
        print(f'box "{box.title}": {box.text!r} {box.buttons}')
    print("(h hidden, d disabled, f focus, t tab stop)\npicture:", pc.screenshot("shot"))


def settled(pc, seen=[]):
    """True once three looks one after the other show the same."""
    seen.append(str([pc.ask("dump", name, "") for name in pc.forms()]))
    return len(seen) > 3 and len(set(seen[-3:])) == 1


def main():
    action, arguments = sys.argv[1], sys.argv[2:]
    display = os.environ.get("DISPLAY") if action == "run" else None
    pc = Pc(display=display, traced=action != "program")
    try:
        if action == "program":
            pc.install()
            file = pathlib.Path(arguments[0])
            shutil.copy(file, pc.folder)
            code, output = pc.run(rf"C:\Brevanta\{file.name}", limit=1200)
            print(output)
            sys.exit(code)
        if not (OUT / "Brevanta.exe").exists():
            sys.exit("out/Brevanta.exe is not there")
        planted = prepare(pc)
        if action == "shot":
            shot(pc, " ".join(arguments))
        elif display:
            run_with_display(pc)
        else:
            run_alone(pc, planted)
    finally:
        pc.close()


main()
