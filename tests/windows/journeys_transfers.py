"""Downloads of the technician's apps, and what servers can do wrong: what is said, and that nothing is lost."""
import shutil

from harness import BUILD, OK, Journey, archive, wait
from loopback import HttpServer, Reply

HOST = "files.brevanta.example"
SETTINGS = """
[Branding]
AppName=Harbour PC Care
UseNewInterface=0
ShowCustomButton=1
[CustomButton]
ShowButton=1
{custom}
[Maint]
CleanMgr=0
DefragReg=0
DefragStartup=0
ProcIdleTasks=0
DoSystemRP=0
ShowURLAfterMaint=0
CloseAppAfterMaint=1
[Confirmations]
ConvertedCustomApps=1
"""


class TransferJourney(Journey):
    def prepare(self, custom=""):
        if not (self.pc.folder / "Brevanta.exe").exists():
            self.pc.install("Brevanta.exe")
            (self.pc.session / "hosts").open("a").write(f"127.0.0.1 {HOST}\n")
        self.pc.write_settings(SETTINGS.format(custom=custom))


class AppsJourney(TransferJourney):
    """Each app is a script that writes its name, "new" or "old", when it begins and when it ends."""

    def script(self, name, age):
        return f"@echo {name} {age} %*>> C:\\apps.txt\r\n@ping -n 2 127.0.0.1 > nul\r\n@echo {name} end>> C:\\apps.txt\r\n"

    def apps(self, **addresses):
        for name, file in addresses.items():
            program = rf"{name}\{name}.cmd" if file.endswith("zip") else f"{name}.cmd"
            self.pc.write_settings(f"[Config]\nApp={program}\nAppParms=/Log %SystemDrive%\\X\n"
                                   f"AppURL=http://{HOST}/{file}\nAppDLName={name}.{file[-3:]}\n"
                                   "AlwaysAttemptDownload=1", f"{name}.cfg")
        self.pc.write_settings("|".join(addresses) + "|", "SortOrder.cfg")

    def old_copy(self, name, folder):
        place = self.pc.folder / "3rd Party Tools" / folder
        place.mkdir(parents=True, exist_ok=True)
        (place / f"{name}.cmd").write_text(self.script(name, "old"))

    def maintenance(self):
        program = self.pc.start("/maintenance")
        self.pc.box("Maintenance may take", 60).answer(OK)
        return program

    def ran(self, program):
        program.wait(60)
        lines = (self.pc.drive / "apps.txt").read_text().split("\n")
        (self.pc.drive / "apps.txt").unlink()
        return [line.strip() for line in lines if line.strip()]

    def test_fetched_unpacked_run_and_waited_for_or_the_old_copy(self):
        self.prepare()
        sound = archive({name + ".cmd": self.script(name, "new") for name in ("whole", "cut", "short")})
        self.apps(whole="whole.zip", plain="plain.cmd", cut="cut.zip", page="page.zip", missing="gone.zip")
        for name in ("whole", "cut", "page", "missing"):
            self.old_copy(name, name)
        with HttpServer({"/whole.zip": sound, "/plain.cmd": self.script("plain", "new").encode(),
                         "/cut.zip": Reply(sound, cut=len(sound) // 2), "/page.zip": b"<html>Log in first</html>"}):
            ran = self.ran(self.maintenance())
        arguments = r" /log c:\x"
        expected = []
        for name, age in (("whole", "new"), ("plain", "new"), ("cut", "old"), ("page", "old"), ("missing", "old")):
            expected += [f"{name} {age}{arguments}", f"{name} end"]
        self.assertEqual(ran, expected)
        # The server gone: what came before runs, the archive it came in is not needed.
        self.assertEqual(self.ran(self.maintenance())[:2], ["whole new" + arguments, "whole end"])
        tools = self.pc.folder / "3rd Party Tools"
        self.assertEqual([p.name for p in tools.rglob("*") if p.suffix in (".old", ".zip", ".unzip")], [])

    def test_cancel_of_the_download_runs_the_old_copy(self):
        self.prepare()
        self.apps(slow="slow.zip")
        self.old_copy("slow", "slow")
        with HttpServer({"/slow.zip": Reply(bytes(400000), chunk=1000, delay=0.1)}):
            program = self.maintenance()
            window = self.pc.form("frmDownload", 60)
            window.wait_text("lblMsg", "Receiving:  slow.zip")
            window.wait_text("lblTotal", "390.63Kb")
            window.click("cmdCancel")
            self.assertEqual(self.ran(program)[0], r"slow old /log c:\x")


class FaultsJourney(TransferJourney):
    """The custom button's download: the program that came runs, whatever else came does no harm."""

    def test_what_is_said_of_each_fault_of_a_web_server(self):
        program = (BUILD / "standin.exe").read_bytes()
        self.prepare()
        self.pc.start()
        panel = self.pc.form("frmMain", 60)
        wait(lambda: panel.text("lblUAC") != "---", "the health display")
        locked = {"WWW-Authenticate": 'Basic realm="x"'}
        # Name: the answer, how many bytes of what came are there, whether it runs, what is said.
        size = len(program)
        rows = {
            "nolength": (Reply(program, length=None), size, True, []),
            "cut": (Reply(program, cut=5000), 5000, False, []),
            "longer": (Reply(program, length=size + 5000), size, True, []),
            "shorter": (Reply(program, length=size - 5000), size - 5000, False, []),
            "missing": (Reply(b"not here", 404), 8, False, []),
            "locked": (Reply(b"who are you", 401, locked), 11, False, []),
            "moved": (Reply(status=302, headers={"Location": "/nolength"}), size, True, []),
            "crawling": (Reply(program * 30, chunk=1000, delay=0.1), None, False, ["cancel"]),
            "round": (Reply(status=302, headers={"Location": "/round"}), None, False,
                      ["Download aborted. Redirect Failed."]),
            "refused": (None, None, False, ["Download aborted."]),
        }
        kept = self.files()
        with HttpServer({"/" + name: row[0] for name, row in rows.items() if row[0]}) as server:
            for name, (_, size, runs, says) in rows.items():
                port = ":8099" if name == "refused" else ""
                self.prepare(f"Type=Download\nButtonAction=http://{HOST}{port}/{name}\nDownloadName=tool.exe")
                started = len(self.pc.started())
                panel.click("cmdCustom")
                for text in says:
                    if text == "cancel":
                        window = self.pc.form("frmDownload")
                        wait(lambda: ("GET", "/crawling", b"") in server.requests, "the request")
                        window.click("cmdCancel")
                    else:
                        self.pc.box(text).answer(OK)
                wait(lambda: any("ownload" in line and f"/{name} - to -" in line for line in self.pc.trace()),
                     f"{name} to end")
                if runs:
                    wait(lambda: len(self.pc.started()) > started, f"{name} to run")
                came = self.pc.folder / "TOOL.EXE"
                self.assertEqual(came.stat().st_size if came.exists() else None, size, name)
                panel.text("txtStatus")  # is answered once the click is done
                came.unlink(missing_ok=True)
                self.assertEqual((self.files(), self.pc.boxes(), self.pc.forms()), (kept, [], ["frmMain"]), name)
        self.assertEqual(len(self.pc.started()), sum(bool(row[2]) for row in rows.values()))

    def files(self):
        return {p.name for p in self.pc.folder.iterdir()}
