"""A Windows PC of its own for each test: a fresh C: drive, a screen, and a driver inside that finds forms and controls.

Nothing here sleeps for a fixed time: what must come true is polled with a limit (wait).
Run through ./dev test, which gives the tests a network of their own; servers may take any port of 127.0.0.1 there.
"""
import io
import json
import os
import pathlib
import re
import shutil
import signal
import subprocess
import sys
import tempfile
import time
import unittest
import zipfile

ROOT = pathlib.Path(__file__).resolve().parents[2]
OUT = ROOT / "out"
BUILD = ROOT / "build/windows"
SHOTS = ROOT / "build/shots"
LIMIT = float(os.environ.get("BREVANTA_WAIT", 20))  # seconds that a PC under load may take for a step

# A time limit from outside still tidies up.
signal.signal(signal.SIGTERM, lambda *_: sys.exit("told to stop"))

# Buttons of message boxes by their ids.
OK, CANCEL, YES, NO = 1, 2, 6, 7

# Hosts that the build names; a PC finds them at 127.0.0.1 and nowhere else.
HOSTS = re.findall(r'"(?:http://)?([\w.-]+\.example)/?"', (ROOT / "src/system/build_constants.h").read_text())


def wait(condition, what, limit=LIMIT):
    """What condition() returns as soon as it is true; AssertionError that names `what` after `limit` seconds."""
    end = time.monotonic() + limit
    while True:
        result = condition()
        if result:
            return result
        if time.monotonic() > end:
            raise AssertionError(f"waited {limit:g} s in vain for {what}")
        time.sleep(0.01)


def archive(files):
    """Bytes of a zip archive: name -> content, in their order."""
    data = io.BytesIO()
    with zipfile.ZipFile(data, "w", zipfile.ZIP_DEFLATED) as packed:
        for name, content in files.items():
            packed.writestr(name, content)
    return data.getvalue()


class DriverError(AssertionError):
    pass


class Pc:
    """One PC. `folder` is C:\\Brevanta as the host sees it, `drive` is C:\\, `user` the client's profile.

    arch "win32" is a 32-bit PC in the looks of Windows XP. hosts are further names that the PC finds at 127.0.0.1, ca a
    file with the certificates it trusts, display a screen that is there already, screen the size of its own; untraced,
    programs run at full speed.
    """

    def __init__(self, arch="win64", hosts=(), ca=None, display=None, traced=True, screen="1024x768"):
        # Beside the clean drive, whose files it shares: another file system could not.
        sessions = pathlib.Path(os.environ["BREVANTA_WINE"], "sessions")
        sessions.mkdir(exist_ok=True)
        self.session = pathlib.Path(tempfile.mkdtemp(dir=sessions))
        self.children = []
        self.counter = 0
        try:
            subprocess.run([ROOT / "workshop/new_session", self.session, arch], check=True)
            names = " ".join([*HOSTS, *hosts])
            (self.session / "hosts").write_text(f"127.0.0.1 localhost {names}\n")
            if ca:
                shutil.copy(ca, self.session / "ca.crt")
            self.drive = self.session / "prefix/drive_c"
            self.user = self.drive / "users/client"
            self.folder = self.drive / "Brevanta"
            self.folder.mkdir()
            users = self.session / "prefix/user.reg"
            users.write_text(users.read_text("latin-1").replace('"Default"="1024x768"', f'"Default"="{screen}"'), "latin-1")
            self.display = display or self._start_screen(screen)
            self.trace_file = open(self.session / "trace", "w+b")
            self._start_driver(traced)
        except BaseException:
            self.close()
            raise

    def _start_screen(self, size):
        read, write = os.pipe()
        screen = subprocess.Popen(["Xvfb", "-displayfd", str(write), "-screen", "0", size + "x24", "-nolisten", "tcp"],
                                  pass_fds=[write], stderr=subprocess.DEVNULL)
        os.close(write)
        self.children.append(screen)
        with open(read) as number:
            return ":" + number.readline().strip()

    def _start_driver(self, traced):
        environment = dict(os.environ, DISPLAY=self.display, WINEDEBUG="-all,+debugstr")
        (self.drive / "driver").mkdir()
        shutil.copy(BUILD / "driver.exe", self.drive / "driver")
        self.driver = subprocess.Popen(
            [ROOT / "workshop/wine", self.session, "wine", r"C:\driver\driver.exe", *["trace"] * traced], env=environment,
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=self.trace_file)
        self.children.append(self.driver)

    def close(self):
        for child in reversed(self.children):
            child.kill()
            child.communicate()
        if hasattr(self, "trace_file"):
            self.trace_file.close()
        shutil.rmtree(self.session, ignore_errors=True)

    # --- the driver ---------------------------------------------------------------------------------------------------

    def ask(self, *fields):
        line = "\t".join(str(f).replace("\\", "\\\\").replace("\t", "\\t").replace("\n", "\\n").replace("\r", "\\r")
                         for f in fields)
        self.driver.stdin.write(line.encode() + b"\n")
        self.driver.stdin.flush()
        answer = self.driver.stdout.readline()
        if not answer:
            raise AssertionError("the driver has ended:\n" + self._trace_text()[-2000:])
        answer = json.loads(answer)
        if "error" in answer:
            raise DriverError(f"{' '.join(map(str, fields))}: {answer['error']}")
        return answer["ok"]

    def try_ask(self, *fields):
        """As ask, but None instead of an error: for things that may not be there yet."""
        try:
            return self.ask(*fields)
        except DriverError:
            return None

    # --- programs -----------------------------------------------------------------------------------------------------

    def install(self, *programs):
        """Copies built programs (all of out/ when none is named) into C:\\Brevanta."""
        for file in map(OUT.joinpath, programs) if programs else OUT.glob("*.exe"):
            shutil.copy(file, self.folder)

    def write_settings(self, text, name="Brevanta.ini"):
        (self.folder / name).write_bytes(text.strip().replace("\n", "\r\n").encode("cp1252") + b"\r\n")

    def start(self, arguments="", program=r"C:\Brevanta\Brevanta.exe", folder=""):
        return Program(self, f'"{program}" {arguments}'.rstrip(), folder)

    def run(self, command, limit=LIMIT):
        """Runs a console program to its end: (exit code, output)."""
        self.counter += 1
        name = f"output{self.counter}.txt"
        program = Program(self, command, "", rf"C:\driver\{name}")
        code = program.wait(limit)
        return code, (self.drive / "driver" / name).read_bytes().decode("cp1252", "replace")

    def registry(self, key, value=None, view=32):
        """Text that reg.exe prints for a key or a value, None when it is not there."""
        code, output = self.run(f'reg query "{key}"' + (f' /v "{value}"' if value else "") + f" /reg:{view}")
        if code:
            return None
        return output.strip().splitlines()[-1].split(None, 2)[-1] if value else output

    def set_registry(self, key, value, data, kind="REG_SZ", view=32):
        code, output = self.run(f'reg add "{key}" /v "{value}" /t {kind} /d "{data}" /f /reg:{view}')
        assert code == 0, output

    def stand_in(self, path):
        """Puts a program at `path` (below C:\\, with forward slashes) that notes how it was started; see started()."""
        (self.drive / path).parent.mkdir(parents=True, exist_ok=True)
        (self.drive / path).unlink(missing_ok=True)  # the system's own files are shared with other PCs
        shutil.copy(BUILD / "standin.exe", self.drive / path)

    def started(self):
        """Command lines of the stand-ins that were started, oldest first."""
        return self._lines("started.txt")

    def catch_addresses(self):
        """From now on the system's browser only notes the addresses it is handed; see opened()."""
        browser = self.drive / "browser"
        browser.write_text("#!/bin/sh\nprintf '%s\\n' \"$*\" >> /home/prefix/drive_c/opened.txt\n")
        browser.chmod(0o755)
        for kind in ("Browsers", "Mailers"):
            self.set_registry(r"HKCU\Software\Wine\WineBrowser", kind, "/home/prefix/drive_c/browser")

    def opened(self):
        """Addresses that the system's browser or mail program was handed, oldest first."""
        return self._lines("opened.txt")

    def _lines(self, name):
        file = self.drive / name
        return file.read_text().splitlines() if file.exists() else []

    # --- what is on the screen ----------------------------------------------------------------------------------------

    def forms(self):
        """Names of the visible forms."""
        return [form["name"] for form in self.ask("forms") if form["visible"]]

    def form(self, name, limit=LIMIT):
        """Waits until the form is visible."""
        wait(lambda: name in self.forms(), f"form {name}", limit)
        return Form(self, name)

    def wait_gone(self, name, limit=LIMIT):
        wait(lambda: name not in self.forms(), f"form {name} to close", limit)

    def boxes(self):
        return [Box(self, described) for described in self.ask("boxes")]

    def box(self, text="", limit=LIMIT):
        """Waits for a message box or dialog of the system whose title or text contains `text`."""
        return wait(lambda: next((b for b in self.boxes() if text in b.title + "\n" + b.text), None),
                    f'a message box with "{text}"', limit)

    def screenshot(self, name):
        SHOTS.mkdir(parents=True, exist_ok=True)
        file = SHOTS / f"{name}.png"
        subprocess.run(["import", "-display", self.display, "-window", "root", file], check=True, timeout=30)
        return file

    # --- trace --------------------------------------------------------------------------------------------------------

    def _trace_text(self):
        self.trace_file.flush()
        return pathlib.Path(self.trace_file.name).read_bytes().decode("latin-1")

    def trace(self):
        """Lines that the programs wrote as debug output, oldest first (Wine cuts each at 300 characters)."""
        lines = []
        for match in re.finditer(r'OutputDebugString[AW] L?"((?:[^"\\]|\\.)*)"', self._trace_text()):
            lines += _unescape(match[1]).splitlines()
        return lines


def _unescape(text):
    plain = {"n": "\n", "r": "\r", "t": "\t", "\\": "\\", '"': '"'}
    return re.sub(r'\\(?:x([0-9a-f]{2})|([0-9a-f]{4})|(.))',
                  lambda m: plain.get(m[3], m[3]) if m[3] else chr(int(m[1] or m[2], 16)), text)


class Program:
    def __init__(self, pc, command, folder="", output=""):
        self.pc = pc
        self.pid = pc.ask("start", command, folder, output)

    def exit_code(self):
        """None while it runs."""
        return self.pc.ask("exitcode", self.pid)

    def wait(self, limit=LIMIT):
        """Its exit code."""
        return wait(lambda: (c := self.exit_code()) is not None and [c], f"process {self.pid} to end", limit)[0]

    def held(self, program="Brevanta.exe"):
        """What it holds now: [kernel handles, windows, kilobytes of memory that are its own]."""
        parents, named = {}, []
        for process in pathlib.Path("/proc").glob("[0-9]*"):
            try:
                parents[process.name] = (process / "stat").read_text().rsplit(")", 1)[1].split()[1]
                if (process / "cmdline").read_bytes().split(b"\0")[0].endswith(program.encode()):
                    named.append(process)
            except OSError:
                pass  # it has ended meanwhile
        below = lambda name: name == str(self.pc.driver.pid) or name in parents and below(parents[name])  # noqa: E731
        ours, = (process for process in named if below(process.name))
        # Not "private dirty": the pages of a file just copied here are dirty too, until the host has written them.
        own = re.search(r"Anonymous: +(\d+)", (ours / "smaps_rollup").read_text())
        return [*self.pc.ask("handles", self.pid), int(own[1])]


class Form:
    """A visible form; controls are named as in the product, items of a sidebar "sideBar.1.2"."""

    def __init__(self, pc, name):
        self.pc, self.name = pc, name

    def controls(self):
        return {c["name"]: c for c in self.pc.ask("dump", self.name, "")["controls"] if c["name"]}

    def control(self, name):
        """name, class, text, visible, enabled, focus, checked, tabStop, rect (pixels in the form)."""
        return self.pc.ask("describe", self.name, name)

    def wait_shown(self, name):
        """A page's controls are made when it is first shown."""
        wait(lambda: self.controls().get(name, {}).get("visible"), name)

    def title(self):
        return self.pc.ask("text", self.name, "")

    def text(self, control):
        return self.pc.ask("text", self.name, control)

    def wait_text(self, control, part, limit=LIMIT):
        return wait(lambda: part in (t := self.pc.try_ask("text", self.name, control) or "") and t,
                    f'"{part}" in {self.name}.{control}', limit)

    def click(self, control):
        self.pc.ask("click", self.name, control)

    def checked(self, control):
        return self.control(control)["checked"] == 1

    def check(self, control, on=True):
        if self.checked(control) != on:
            self.click(control)
            wait(lambda: self.checked(control) == on, f"{control} to be {'on' if on else 'off'}")

    def type(self, control, text):
        self.pc.ask("settext", self.name, control, text)

    def items(self, control):
        return self.pc.ask("items", self.name, control)["items"]

    def selected(self, control):
        """Text of the entry that is picked, None when none is."""
        answer = self.pc.ask("items", self.name, control)
        return answer["items"][answer["selected"]] if answer["selected"] >= 0 else None

    def select(self, control, entry):
        """By text, or by position from 0."""
        self.pc.ask("select", self.name, control, self.items(control).index(entry) if isinstance(entry, str) else entry)

    def rows(self, control):
        return self.pc.ask("rows", self.name, control)["rows"]

    def check_row(self, control, row, on=True):
        self.pc.ask("checkrow", self.name, control, row, int(on))

    def key(self, combination):
        """A real key stroke to the control with the focus: "Tab", "Shift+Tab", "Alt+F", "Escape"."""
        self.pc.ask("keys", self.name, "", combination)

    def focus(self):
        return next((name for name, c in self.controls().items() if c["focus"]), None)

    def close(self):
        self.pc.ask("close", self.name, "")

    def resize(self, x, y, width, height):
        self.pc.ask("move", self.name, "", x, y, width, height)


class Box:
    """A message box of the system, or another of its dialogs."""

    def __init__(self, pc, described):
        self.pc, self.handle = pc, "@" + str(described["window"]["handle"])
        self.title = described["window"]["text"]
        self.controls = described["controls"]
        self.text = "\n".join(c["text"] for c in self.controls if c["class"] == "Static" and c["text"])
        self.buttons = {c["id"]: c["text"] for c in self.controls if c["class"] == "Button"}

    def answer(self, button):
        """Presses a button by its id, or a key such as "Enter", and waits until the box is gone."""
        if isinstance(button, str):
            self.pc.ask("keys", self.handle, "", button)
        else:
            self.pc.ask("click", self.handle, f"#{button}")
        wait(lambda: all(b.handle != self.handle for b in self.pc.boxes()), f'"{self.title}" to close')


class Journey(unittest.TestCase):
    """Base of the journeys: self.pc is fresh for each test; a failing one leaves a picture in build/shots."""

    arch = "win64"

    def setUp(self):
        self.pc = Pc(self.arch)
        self.addCleanup(self.pc.close)

    def start_panel(self, form="frmMain"):
        """The panel as soon as it has measured the PC: its program and its form."""
        program = self.pc.start()
        panel = self.pc.form(form, 60)
        wait(lambda: panel.text("lblUAC") != "---" and panel.text("txtStatus") == "", "the PC to be measured", 60)
        return program, panel

    def _callTestMethod(self, method):
        try:
            super()._callTestMethod(method)
        except BaseException:
            print(f"\n{self.id()}: picture {self.pc.screenshot('failed-' + self._testMethodName)}")
            print("\n".join(self.pc.trace()[-30:]))
            raise
